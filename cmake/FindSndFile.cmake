# libsndfile, found through pkg-config. A find module so that
# find_package(SndFile) and CMAKE_DISABLE_FIND_PACKAGE_SndFile behave as for
# any other package. Provides the imported target PkgConfig::SNDFILE.
find_package(PkgConfig QUIET)
if(PkgConfig_FOUND)
    pkg_check_modules(SNDFILE QUIET IMPORTED_TARGET sndfile)
endif()
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(SndFile
    REQUIRED_VARS SNDFILE_LINK_LIBRARIES
    VERSION_VAR SNDFILE_VERSION)
