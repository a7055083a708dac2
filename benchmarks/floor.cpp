// The floor under a run of the converter: reads the same bytes, writes the same bytes to the same
// places and starts the same commands, and does nothing else. What the converter takes longer
// than this is its own work.
//
// usage: floor MANIFEST
// The manifest has one action a line:
//   read PATH        reads the file
//   write SIZE PATH  writes so many bytes
//   chmod PATH       sets the permission bits to 0666
//   run COMMAND      runs it through the system shell
//   print TEXT       prints the line

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::vector<char> s_bytes(1024 * 1024, ' ');

void Read(const char* path) {
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    while (read(file, s_bytes.data(), s_bytes.size()) > 0) {
    }
    close(file);
}

void Write(const char* sizeAndPath) {
    char* path = nullptr;
    const unsigned long size = std::strtoul(sizeAndPath, &path, 10);
    const int file = open(path + 1, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (size > s_bytes.size() || write(file, s_bytes.data(), size) != static_cast<ssize_t>(size))
        std::perror(path + 1);
    close(file);
}

void Act(std::string_view verb, const char* argument) {
    if (verb == "read") {
        Read(argument);
    } else if (verb == "write") {
        Write(argument);
    } else if (verb == "chmod") {
        if (chmod(argument, 0666) != 0)
            std::perror(argument);
    } else if (verb == "run") {
        std::fflush(stdout);
        if (std::system(argument) != 0)
            std::puts("Problem");
    } else {
        std::puts(argument);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2)
        return 2;
    std::ifstream file(argv[1]);
    for (std::string line; std::getline(file, line);) {
        const std::size_t blank = line.find(' ');
        if (blank != std::string::npos)
            Act(std::string_view(line).substr(0, blank), line.c_str() + blank + 1);
    }
    return 0;
}
