# What an installation has besides the programs themselves (their install rules stand with their
# targets): manual pages, documents, shell completion, papers; and the Debian package (cpack -G DEB
# in the build directory).

set(GROLOF_DOC_DIR ${CMAKE_INSTALL_DATADIR}/doc/grolof)
find_program(GROLOF_GZIP gzip)

# grolof_packed(SOURCE NAME): GROLOF_PACKED becomes the path of SOURCE packed as NAME.gz, or of SOURCE
# itself where there is no gzip. -n keeps time stamps out, so that equal builds give equal files.
set(GROLOF_ALL_PACKED "")
macro(grolof_packed source name)
    set(GROLOF_PACKED ${source})
    if(GROLOF_GZIP)
        set(GROLOF_PACKED ${PROJECT_BINARY_DIR}/docs/${name}.gz)
        add_custom_command(OUTPUT ${GROLOF_PACKED}
            COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/docs
            COMMAND ${GROLOF_GZIP} -9 -n -c ${source} > ${GROLOF_PACKED}
            DEPENDS ${source}
            VERBATIM)
        list(APPEND GROLOF_ALL_PACKED ${GROLOF_PACKED})
    endif()
endmacro()

set(packed_suffix "")
if(GROLOF_GZIP)
    set(packed_suffix .gz)
endif()

foreach(page grolof.1 t3zplay.1 t3b.5 t3z.5)
    string(REGEX MATCH "[0-9]$" section ${page})
    grolof_packed(${PROJECT_SOURCE_DIR}/docs/${page} ${page})
    install(FILES ${GROLOF_PACKED} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section})
endforeach()
grolof_link(grolof.1${packed_suffix} ${CMAKE_INSTALL_MANDIR}/man1/bmsgrolof.1${packed_suffix})

grolof_packed(${PROJECT_SOURCE_DIR}/CHANGELOG.md changelog)
install(FILES ${GROLOF_PACKED} DESTINATION ${GROLOF_DOC_DIR})
install(FILES ${PROJECT_SOURCE_DIR}/README.md
              ${PROJECT_SOURCE_DIR}/docs/bms-errors.md
              ${PROJECT_SOURCE_DIR}/docs/cobol.md
        DESTINATION ${GROLOF_DOC_DIR})

set(completions ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
install(FILES ${PROJECT_SOURCE_DIR}/docs/grolof.bash-completion
        DESTINATION ${completions} RENAME grolof)
grolof_link(grolof ${completions}/bmsgrolof)

# Papers that Debian wants in a package; they go along wherever the prefix is /usr.
grolof_packed(${PROJECT_SOURCE_DIR}/cmake/debian/changelog changelog.Debian)
install(CODE "
    if(CMAKE_INSTALL_PREFIX MATCHES \"/usr$\")
        file(INSTALL \"${GROLOF_PACKED}\" \"${PROJECT_SOURCE_DIR}/cmake/debian/copyright\"
             DESTINATION \"\${CMAKE_INSTALL_PREFIX}/${GROLOF_DOC_DIR}\")
    endif()")

add_custom_target(documentation ALL DEPENDS ${GROLOF_ALL_PACKED})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME grolof)
set(CPACK_PACKAGE_VENDOR "grolof developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "converter of form sources into screen formats and COPY books")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "grolof developers <maintainers@grolof.invalid>")
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"grolof reads DPS FLDP forms, CICS BMS map sets or its own screen definition
files and writes for every screen the screen definition file, the binary MCS
format for the run-time screen handler, and the COBOL COPY books that
describe the screen's data to programs.

Called as bmsgrolof it converts BMS map sets. t3zplay shows an MCS format as
a picture in the terminal.")
include(CPack)
