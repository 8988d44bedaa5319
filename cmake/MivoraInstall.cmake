# Installation and export of the library: headers, the library file, a CMake
# package (MivoraConfig.cmake, MivoraConfigVersion.cmake, Mivora::iir) and a
# pkg-config file (mivora.pc). Included from the top-level CMakeLists.txt once
# the mivora_iir target exists.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(MIVORA_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/Mivora"
    CACHE STRING "Where MivoraConfig.cmake is installed, relative to the prefix")
set(MIVORA_INSTALL_PKGCONFIGDIR "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
    CACHE STRING "Where mivora.pc is installed, relative to the prefix")
mark_as_advanced(MIVORA_INSTALL_CMAKEDIR MIVORA_INSTALL_PKGCONFIGDIR)

install(TARGETS mivora_iir
    EXPORT MivoraTargets
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT Mivora_Development
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT Mivora_Runtime
        NAMELINK_COMPONENT Mivora_Development
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT Mivora_Runtime
    INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")

install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/mivora"
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
    COMPONENT Mivora_Development
    FILES_MATCHING PATTERN "*.h")

install(EXPORT MivoraTargets
    NAMESPACE Mivora::
    DESTINATION "${MIVORA_INSTALL_CMAKEDIR}"
    COMPONENT Mivora_Development)

configure_package_config_file(
    "${CMAKE_CURRENT_LIST_DIR}/MivoraConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/MivoraConfig.cmake"
    INSTALL_DESTINATION "${MIVORA_INSTALL_CMAKEDIR}")
# Any 0.x release satisfies a request for another 0.x; a new major breaks.
write_basic_package_version_file(
    "${PROJECT_BINARY_DIR}/MivoraConfigVersion.cmake"
    VERSION "${PROJECT_VERSION}"
    COMPATIBILITY SameMajorVersion)
install(FILES
        "${PROJECT_BINARY_DIR}/MivoraConfig.cmake"
        "${PROJECT_BINARY_DIR}/MivoraConfigVersion.cmake"
    DESTINATION "${MIVORA_INSTALL_CMAKEDIR}"
    COMPONENT Mivora_Development)

# mivora.pc finds the prefix from its own location, so an installed tree can
# be moved (or installed with `cmake --install --prefix`) and still work.
# Absolute install directories are written as they are.
function(mivora_pc_dir out dir)
    if(IS_ABSOLUTE "${dir}")
        set(${out} "${dir}" PARENT_SCOPE)
    else()
        set(${out} "\${prefix}/${dir}" PARENT_SCOPE)
    endif()
endfunction()
if(IS_ABSOLUTE "${MIVORA_INSTALL_PKGCONFIGDIR}")
    set(MIVORA_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
else()
    file(RELATIVE_PATH MIVORA_PC_UP "/prefix/${MIVORA_INSTALL_PKGCONFIGDIR}" "/prefix")
    string(REGEX REPLACE "/$" "" MIVORA_PC_UP "${MIVORA_PC_UP}")
    set(MIVORA_PC_PREFIX "\${pcfiledir}/${MIVORA_PC_UP}")
endif()
mivora_pc_dir(MIVORA_PC_LIBDIR "${CMAKE_INSTALL_LIBDIR}")
mivora_pc_dir(MIVORA_PC_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}")
get_target_property(MIVORA_PC_OUTPUT_NAME mivora_iir OUTPUT_NAME)
get_target_property(mivora_pc_type mivora_iir TYPE)
if(mivora_pc_type STREQUAL "SHARED_LIBRARY")
    set(MIVORA_PC_CFLAGS_EXTRA " -DMIVORA_SHARED")
else()
    set(MIVORA_PC_CFLAGS_EXTRA "")
endif()
configure_file("${CMAKE_CURRENT_LIST_DIR}/mivora.pc.in"
    "${PROJECT_BINARY_DIR}/mivora.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/mivora.pc"
    DESTINATION "${MIVORA_INSTALL_PKGCONFIGDIR}"
    COMPONENT Mivora_Development)
