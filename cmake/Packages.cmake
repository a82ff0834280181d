# What `cpack` makes in the build folder for Windows: a .zip with all that is installed. The Debian packages come from
# debian/, by scripts/packages.
set(CPACK_PACKAGE_NAME corvane)
set(CPACK_PACKAGE_CONTACT "corvane maintainers <maintainers@corvane.example>")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY ON)
set(CPACK_GENERATOR ZIP)
include(CPack)
