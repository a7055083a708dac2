# What an installation has besides the program itself (its own install rule stands with its target):
# manual pages, shell completion, papers; and the Debian package (cpack -G DEB in the build
# directory).

set(GROLOF_DOC_DIR ${CMAKE_INSTALL_DATADIR}/doc/grolof)
find_program(GROLOF_GZIP gzip)

# grolof_compressed(SOURCE NAME DIRECTORY): installs SOURCE as DIRECTORY/NAME.gz, or as it is where
# there is no gzip. -n keeps time stamps out, so that equal builds give equal files.
set(GROLOF_COMPRESSED "")
function(grolof_compressed source name directory)
    if(NOT GROLOF_GZIP)
        install(FILES ${source} DESTINATION ${directory} RENAME ${name})
        return()
    endif()
    set(packed ${PROJECT_BINARY_DIR}/docs/${name}.gz)
    add_custom_command(OUTPUT ${packed}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/docs
        COMMAND ${GROLOF_GZIP} -9 -n -c ${source} > ${packed}
        DEPENDS ${source}
        VERBATIM)
    install(FILES ${packed} DESTINATION ${directory})
    set(GROLOF_COMPRESSED ${GROLOF_COMPRESSED} ${packed} PARENT_SCOPE)
endfunction()

# grolof_link(TARGET LINK): installs a symbolic link, relative, as DESTDIR wants it.
function(grolof_link target link)
    install(CODE "
        set(link \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${link}\")
        message(STATUS \"Installing: \${link}\")
        file(CREATE_LINK ${target} \"\${link}\" SYMBOLIC)")
endfunction()

set(packed_suffix "")
if(GROLOF_GZIP)
    set(packed_suffix .gz)
endif()

foreach(page grolof.1 t3zplay.1 t3b.5 t3z.5)
    string(REGEX MATCH "[0-9]$" section ${page})
    grolof_compressed(${PROJECT_SOURCE_DIR}/docs/${page} ${page}
                      ${CMAKE_INSTALL_MANDIR}/man${section})
endforeach()
grolof_link(grolof.1${packed_suffix} ${CMAKE_INSTALL_MANDIR}/man1/bmsgrolof.1${packed_suffix})

grolof_compressed(${PROJECT_SOURCE_DIR}/CHANGELOG.md changelog ${GROLOF_DOC_DIR})
install(FILES ${PROJECT_SOURCE_DIR}/README.md DESTINATION ${GROLOF_DOC_DIR})

set(completions ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
install(FILES ${PROJECT_SOURCE_DIR}/docs/grolof.bash-completion
        DESTINATION ${completions} RENAME grolof)
grolof_link(grolof ${completions}/bmsgrolof)

# Papers that only a Debian package has.
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr" OR GROLOF_DEBIAN_PAPERS)
    grolof_compressed(${PROJECT_SOURCE_DIR}/cmake/debian/changelog changelog.Debian
                      ${GROLOF_DOC_DIR})
    install(FILES ${PROJECT_SOURCE_DIR}/cmake/debian/copyright DESTINATION ${GROLOF_DOC_DIR})
endif()

add_custom_target(documentation ALL DEPENDS ${GROLOF_COMPRESSED})

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
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "grolof developers <grolof@packages.debian.org>")
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"${CPACK_PACKAGE_DESCRIPTION_SUMMARY}
 grolof reads DPS FLDP forms, CICS BMS map sets or its own screen definition
 files and writes for every screen the screen definition file, the binary MCS
 format for the run-time screen handler, and the COBOL COPY books that
 describe the screen's data to programs.
 .
 Called as bmsgrolof it converts BMS map sets. t3zplay shows an MCS format as
 a picture in the terminal.")
include(CPack)
