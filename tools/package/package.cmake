# A Debian package: cmake --build build --target package
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME radar-plot)
set(CPACK_PACKAGE_VENDOR "radar")
set(CPACK_PACKAGE_CONTACT "The makers of radar <radar@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "plots weather radar data on a map")
set(CPACK_PACKAGE_DESCRIPTION "Draws NIDS products, Level II archives, national composites, RRWDS scans,
radar coded messages and radar summaries on a map: in a window, as PostScript, HP-GL/2, a metafile,
GIF, PNG, a window dump or a native picture.")
set(CPACK_PACKAGE_FILE_NAME radar-plot)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# This library is loaded when it is needed, which no tool sees: libnetcdf.so.19 is in libnetcdf19.
string(REGEX REPLACE "\\.so\\." "" CPACK_DEBIAN_PACKAGE_DEPENDS ${netcdf_name})
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
set(CPACK_COMPONENTS_ALL Unspecified links)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
include(CPack)
