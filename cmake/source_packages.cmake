# Packages that Debian has for other systems as source only: find_package builds them along with the project.
include(FetchContent)
set(FETCHCONTENT_SOURCE_DIR_GTEST /usr/src/googletest)
set(BUILD_GMOCK OFF)
set(INSTALL_GTEST OFF)
FetchContent_Declare(GTest SYSTEM OVERRIDE_FIND_PACKAGE)
