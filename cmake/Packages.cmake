# Debian packages, one for each component: library, development files, package for Python,
# demonstration, settings, host over PKCS#11. script/package makes them.
set(ZELDLG_MAINTAINER "libzeldlglib maintainers <maintainers@zeldlg.example>" CACHE STRING
    "Maintainer of the Debian packages")

set(package_runtime libzeldlglib${PROJECT_VERSION_MAJOR})
set(package_development libzeldlglib-dev)
set(package_python python3-zeldlg)
set(package_demo zeldlg-demo)
set(package_settings zeldlg-settings)
set(package_pkcs11 zeldlg-p11)
set(components runtime development python)
if(ZELDLG_BUILD_PROGRAMS)
    list(APPEND components demo settings)
endif()
if(TARGET zeldlg-p11)
    list(APPEND components pkcs11)
endif()
set(packaging_dir ${PROJECT_SOURCE_DIR}/packaging)
set(generated_dir ${PROJECT_BINARY_DIR}/packaging)

# What every package has under share/doc.
function(compress input output)
    add_custom_command(OUTPUT ${generated_dir}/${output}.gz
        COMMAND ${CMAKE_COMMAND} -E copy ${input} ${generated_dir}/${output}
        COMMAND gzip -9nf ${generated_dir}/${output}
        DEPENDS ${input} VERBATIM)
endfunction()
compress(${packaging_dir}/changelog changelog.Debian)
compress(${PROJECT_SOURCE_DIR}/CHANGELOG.md changelog)
compress(${PROJECT_SOURCE_DIR}/examples/pkcs11/zeldlg-p11.1 zeldlg-p11.1)
set(changelogs ${generated_dir}/changelog.Debian.gz ${generated_dir}/changelog.gz)
add_custom_target(zeldlg-compressed ALL DEPENDS ${changelogs} ${generated_dir}/zeldlg-p11.1.gz)
if(TARGET zeldlg-p11)
    install(FILES ${generated_dir}/zeldlg-p11.1.gz
            DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT pkcs11)
endif()
foreach(component IN LISTS components)
    install(FILES ${packaging_dir}/copyright ${changelogs}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package_${component}}
            COMPONENT ${component})
    install(FILES ${packaging_dir}/lintian-overrides
            DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
            RENAME ${package_${component}} COMPONENT ${component})
endforeach()

# Pages for hosts and administrators. Links that leave their folder lead to what is installed; what
# another package has, or none, is named.
foreach(page hosting pkcs11 settings)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS docs/${page}.md)
    file(READ docs/${page}.md text)
    string(REPLACE "[`zeldlg.h`](../include/zeldlg/zeldlg.h)"
           "`${CMAKE_INSTALL_FULL_INCLUDEDIR}/zeldlg/zeldlg.h`" text "${text}")
    string(REPLACE "[`examples/`](../examples)"
           "`${CMAKE_INSTALL_FULL_DATADIR}/doc/${package_development}/examples`" text "${text}")
    string(REPLACE "[`examples/pkcs11/`](../examples/pkcs11)"
           "`${CMAKE_INSTALL_FULL_DATADIR}/doc/${package_development}/examples/pkcs11`"
           text "${text}")
    string(REGEX REPLACE "\\| !\\[\\]\\([^)]*\\) \\| " "| | " text "${text}")  # pictures
    string(REPLACE "[the gallery](gallery.md)" "the gallery in the sources" text "${text}")
    string(REPLACE "](../packaging/registry)"
           "](${CMAKE_INSTALL_FULL_DATADIR}/tessaly/registry)" text "${text}")
    file(WRITE ${generated_dir}/docs/${page}.md "${text}")
    list(APPEND pages ${generated_dir}/docs/${page}.md)
endforeach()
install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package_runtime}
        COMPONENT runtime)
install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package_development}/docs
        COMPONENT development)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package_development}
        COMPONENT development)

set(CPACK_PACKAGE_NAME zeldlg)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL ${components})
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
# Each package has a summary of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SOURCE zeldlg)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${ZELDLG_MAINTAINER})
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(same_version "(= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
set(common_description
    "libzeldlglib shows the dialogs of a smart-card and security-token middleware:
PIN entry, change of PIN and PUK, PIN-pad prompts, selection of tokens and
digital IDs, unblocking, questions and notices.")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${package_runtime})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS "${package_settings} ${same_version}")
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
    "dialogs of a smart-card and security-token middleware
${common_description}
.
This package has the shared library, the shipped settings, and what hosts and
administrators have to know.")
file(WRITE ${generated_dir}/shlibs
     "libzeldlglib ${PROJECT_VERSION_MAJOR} ${package_runtime} (>= ${PROJECT_VERSION})\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
    ${packaging_dir}/control/symbols ${packaging_dir}/control/triggers ${generated_dir}/shlibs
    # Two files that are not there keep CPack from writing scripts that call ldconfig: the trigger
    # does that.
    ${packaging_dir}/control/postinst ${packaging_dir}/control/postrm)

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${package_development})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${package_runtime} ${same_version}")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
    "dialogs of a smart-card middleware (development files)
${common_description}
.
This package has what a host is built with: header, CMake package, pkg-config
file, and examples of hosts.")

set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME ${package_python})
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "${package_runtime} (>= ${PROJECT_VERSION}), python3")
set(CPACK_DEBIAN_PYTHON_DESCRIPTION
    "dialogs of a smart-card middleware (package for Python)
${common_description}
.
This package has the module zeldlg, with which hosts in Python show them.")

# The programs load the library at run time, which shlibdeps cannot see.
foreach(program IN ITEMS DEMO SETTINGS PKCS11)
    string(TOLOWER ${program} component)
    set(CPACK_DEBIAN_${program}_PACKAGE_NAME ${package_${component}})
    set(CPACK_DEBIAN_${program}_PACKAGE_DEPENDS "${package_runtime} ${same_version}")
endforeach()
set(CPACK_DEBIAN_DEMO_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_DEMO_DESCRIPTION
    "dialogs of a smart-card middleware (demonstration)
${common_description}
.
This package has zeldlg-demo, which shows each dialog and prints what a host
receives.")
set(CPACK_DEBIAN_SETTINGS_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_SETTINGS_DESCRIPTION
    "dialogs of a smart-card middleware (administration)
${common_description}
.
This package has zeldlg-settings, which reads and changes the settings, judges
PINs against a policy, and says what keeps dialogs from working.")
set(CPACK_DEBIAN_PKCS11_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PKCS11_DESCRIPTION
    "dialogs of a smart-card middleware (PKCS#11)
${common_description}
.
This package has zeldlg-p11, which works with the tokens of a PKCS#11 module,
and a module in front of another, which asks for the PINs that programs leave
out.")

include(CPack)

# The packages of an older version would be taken for those of this one.
set(packages_dir ${PROJECT_BINARY_DIR}/packages)
add_custom_target(zeldlg-packages
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${packages_dir}
    COMMAND ${CMAKE_CPACK_COMMAND} -G DEB -B ${packages_dir}
    VERBATIM)
set_target_properties(zeldlg-packages PROPERTIES PACKAGES_DIR ${packages_dir})
