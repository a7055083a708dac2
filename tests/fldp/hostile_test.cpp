// Input that nobody meant: whatever it is, the reader returns forms or ends with one line.
#include <algorithm>
#include <filesystem>
#include <map>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include "source.h"

namespace grolof {
namespace {

using namespace fldp_test;

constexpr std::string_view kOrder =
    "@ order entry\n"
    "FORM\n"
    "NAME = 'ORDER'\n"
    "NUMBER = 17\n"
    "GROUP = \"SALES\"\n"
    "DIMENSION HEIGHT = 24 WIDTH = 80\n"
    "FUNCTION_KEYS NAME = (KEY_1, KEY_2)\n"
    "FIELD_CHARACTERS = ('_', '.')\n"
    "FIELD\n"
    "  NAME = 'CUST''NO'\n"
    "  POS_IMA ROW = 3 &\r\n"
    "          COLUMN = 10\r\n"
    "  GENERAL_EDIT CASE = UPPER DISPLAY = (BLANK_WHEN_ZERO, INSERT_DELIMITERS) &\n"
    "    SIGN = (TRAILING)\n"
    "END_FIELD\n"
    "IMAGE\n"
    "  NAME = 'LINE'\n"
    "  REPEAT_IMAGE COUNT = 12 DIRECTION = DOWN INDEX_ITEM = 'IX'\n"
    "  IMAGE\n"
    "    FIELD NAME = 'QTY' END_FIELD\n"
    "  END_IMAGE\n"
    "END_IMAGE\n"
    "FIELD\n"
    "  DIMENSION WIDTH = 160\n"
    "  PREDEFINED_VALUE INITIAL_VALUE = 'ORDER ENTRY                 ' &&\n"
    "   \"CUSTOMER: \" &&\n"
    "   'QUANTITY  PRICE'\n"
    "END_FIELD\n"
    "END_FORM\n";

// A file in memory with a path: thousands of sources are read here, and a disk would be slow.
class MemoryFile {
public:
    explicit MemoryFile(std::string_view text = {})
        : m_descriptor(memfd_create("source", MFD_CLOEXEC)) {
        Fill(text);
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { close(m_descriptor); }

    std::string Path() const { return "/proc/self/fd/" + std::to_string(m_descriptor); }

    void Fill(std::string_view text) const {
        Cut(0);
        Put(0, text);
    }
    void Cut(std::size_t length) const {
        if (ftruncate(m_descriptor, static_cast<off_t>(length)) != 0)
            throw std::runtime_error("cannot cut the source");
    }
    void Put(std::size_t at, std::string_view bytes) const {
        const auto size = static_cast<ssize_t>(bytes.size());
        if (pwrite(m_descriptor, bytes.data(), bytes.size(), static_cast<off_t>(at)) != size)
            throw std::runtime_error("cannot write the source");
    }

private:
    int m_descriptor;
};

class Hostile : public SourceTest {
protected:
    // Reads a source that may be refused; the output is not looked at.
    static bool Reads(const MemoryFile& source) {
        bool returned = false;
        const int status = StatusOf([&] {
            const RecordList forms = ParseFldpFile(source.Path(), kDefaultConversionFlags);
            returned = forms != nullptr;
        });
        EXPECT_EQ(status, returned ? -1 : 1);
        return returned;
    }

    // Reads a source cut at every length. What is printed is one error line for each refusal.
    static void CutEverywhere(std::string_view text) {
        const MemoryFile source(text);
        CaptureStdout out;
        CaptureStderr error;
        std::size_t refused = Reads(source) ? 0 : 1;
        for (std::size_t length = text.size(); length-- > 0;) {
            source.Cut(length);
            refused += Reads(source) ? 0 : 1;
        }
        const std::string lines = out.Take();
        EXPECT_EQ(error.Take(), "");
        std::size_t errors = 0;
        for (auto at = lines.find("; Syntax Error at column "); at != std::string::npos;
             at = lines.find("; Syntax Error at column ", at + 1))
            ++errors;
        EXPECT_EQ(errors, refused);
        EXPECT_GT(refused, 0U);
    }
};

TEST_F(Hostile, ASourceCutAtEveryLength) {
    EXPECT_EQ(Shape(*Forms(kOrder)), "Form ORDER(F CUST'NO R LINE(I -(F QTY)) H 1,1 'ORDER ENTRY' "
                                     "H 1,29 'CUSTOMER: QUANTITY' H 1,49 'PRICE')");
    CutEverywhere(kOrder);
}

TEST_F(Hostile, ExamplesCutAtEveryLength) {
    std::vector<std::filesystem::path> examples;
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator(EXAMPLES_DIRECTORY, none))
        if (entry.path().extension() == ".fldp")
            examples.push_back(entry.path());
    if (examples.empty())
        GTEST_SKIP() << "no examples";
    std::sort(examples.begin(), examples.end());
    for (const auto& example : examples) {
        SCOPED_TRACE(example.filename());
        const std::string text = ReadFile(example.string());
        EXPECT_GE(ListCount(*Forms(text)), 1);
        CutEverywhere(text);
    }
}

// One byte of the source replaced: every place, a few telling bytes.
TEST_F(Hostile, EveryByteReplaced) {
    const MemoryFile source(kOrder);
    CaptureStdout out;
    CaptureStderr error;
    for (std::size_t i = 0; i < kOrder.size(); ++i) {
        for (const char byte : {'\0', '\'', '&', '\n', '(', '9', '\xFF'}) {
            source.Put(i, {&byte, 1});
            Reads(source);
        }
        source.Put(i, kOrder.substr(i, 1));
    }
    EXPECT_TRUE(Reads(source)) << "the source is whole again";
}

TEST_F(Hostile, BinaryFiles) {
    const MemoryFile source;
    std::mt19937 random(4711);
    CaptureStdout out;
    CaptureStderr error;
    for (int i = 0; i < 300; ++i) {
        std::string text(static_cast<std::size_t>(random() % 2000), '\0');
        for (char& c : text)
            c = static_cast<char>(random());
        source.Fill(text);
        Reads(source);
    }
    std::string all;
    for (int c = 0; c < 256; ++c)
        all += static_cast<char>(c);
    source.Fill("FORM\n" + all + all + "\n");
    EXPECT_FALSE(Reads(source));
}

// Words of the language in random order reach deeper than bytes do.
TEST_F(Hostile, WordsInRandomOrder) {
    const std::vector<std::string> words = {
        "FORM ", "END_FORM ", "FIELD ", "END_FIELD ", "IMAGE ", "END_IMAGE ", "NAME ",  "= ",
        "'A' ",  "& ",        "\n",     "&\n",        "( ",     ") ",         ", ",     "5 ",
        "DIM ",  "WIDTH ",    "TYPE ",  "NORMAL ",    "TEST ",  "REP_IMA ",   "COUNT ", "@ "};
    const MemoryFile source;
    std::mt19937 random(42);
    CaptureStdout out;
    CaptureStderr error;
    for (int i = 0; i < 2000; ++i) {
        std::string text = "FORM\n";
        for (int n = 0; n < 40; ++n)
            text += words[random() % words.size()];
        source.Fill(text + "\n");
        Reads(source);
    }
}

TEST_F(Hostile, LongLines) {
    // Pieces of 254 characters: a name of 10,000 letters is refused in the first.
    EXPECT_EQ(ErrorLine(std::string(10000, 'A') + "\n"),
              "Line     1: x.fldp; Syntax Error at column 254 (" + std::string(254, 'A') + ")\n");
    // A comment of 10,000 characters is one in its first piece only.
    EXPECT_EQ(ErrorLine("@" + std::string(9999, 'c') + "\n"),
              "Line     2: x.fldp; Syntax Error at column 254 (" + std::string(254, 'c') + ")\n");
    // A literal takes up to the end of its piece and its statement end.
    EXPECT_EQ(ErrorLine("FORM NAME = '" + std::string(10000, 'x') + "'\n"),
              "Line     2: x.fldp; Syntax Error at column 254 (" + std::string(254, 'x') + ")\n");
    // Blanks are nothing, however many.
    EXPECT_EQ(Shape(*Forms("FORM" + std::string(10000, ' ') + "\nEND_FORM\n")), "Form -");
}

TEST_F(Hostile, LongNumbers) {
    EXPECT_EQ(AsForm(FirstOf(*Forms(InForm("NUMBER = " + std::string(40, '9'))))).Number, -1);
    EXPECT_EQ(AsForm(FirstOf(*Forms(InForm("NUMBER = " + std::string(40, '0') + "12")))).Number,
              12);
}

TEST_F(Hostile, ALiteralNeverClosed) {
    EXPECT_EQ(ErrorLine("FORM\nNAME = 'A\n'\n"),
              "Line     3: x.fldp; Syntax Error at column 15 (\nEND_STATEMENT)\n");
    // An endless concatenation is gathered without nesting.
    std::string text = "FORM\nNAME = ''";
    for (int i = 0; i < 50000; ++i)
        text += " &&\n'x'";
    const RecordList forms = Forms(text + "\nEND_FORM\n");
    EXPECT_EQ(AsForm(FirstOf(*forms)).Name, std::string(50000, 'x'));
}

TEST_F(Hostile, NamesAreKeptAsTheyAre) {
    const RecordList forms = Forms(InForm("NAME = \"../../$(reboot)';x\"\nGROUP = '`id`/..'\n"));
    EXPECT_EQ(Described(AsForm(FirstOf(*forms))),
              "Name='../../$(reboot)';x' Group='`id`/..' NumericName=1");
}

TEST_F(Hostile, HugeNumbersEverywhere) {
    constexpr std::string_view kForm =
        "FORM\nDIM HEIGHT = # WIDTH = #\n"
        "IMAGE\nPOS_IMA ROW = # COLUMN = #\nDIM HEIGHT = # WIDTH = #\n"
        "REP_IMA DIRECTION = RIGHT SPACING = # COUNT = 3\n"
        "IMAGE\nPOS_IMA ROW = # COLUMN = #\nDIM HEIGHT = # WIDTH = #\n"
        "REP_IMA SPACING = # COUNT = #\n"
        "FIELD\nPOS_IMA ROW = # COLUMN = #\nDIM HEIGHT = # WIDTH = #\nEND_FIELD\n"
        "END_IMAGE\nEND_IMAGE\n"
        "FIELD\nDIM WIDTH = #\nPRE_VAL INITIAL_VALUE = 'A B C'\nEND_FIELD\nEND_FORM\n";
    // 2147483648 is stored as -2147483648, and no width shows no text.
    for (const auto& [number, headings] : std::map<std::string_view, std::string>{
             {"2147483647", " H 1,1 'A B C'"}, {"2147483648", ""}, {"0", ""}}) {
        std::string source;
        for (const char c : kForm)
            source += c == '#' ? number : std::string_view(&c, 1);
        EXPECT_EQ(Shape(*Forms(source)), "Form -(R -(R -(F -))" + headings + ")");
    }
}

} // namespace
} // namespace grolof
