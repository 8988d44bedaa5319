# Every header of include/ and src/ compiles on its own: one generated
# translation unit per header, each holding nothing but its #include, built
# as an object library with the library's include paths, flags and warnings.
# A header that builds only thanks to what an includer happened to include
# before it fails here. New headers are picked up at the next build.
file(GLOB_RECURSE mivora_checked_headers CONFIGURE_DEPENDS
    LIST_DIRECTORIES false RELATIVE ${PROJECT_SOURCE_DIR}
    ${PROJECT_SOURCE_DIR}/include/*.h ${PROJECT_SOURCE_DIR}/src/*.h ${PROJECT_SOURCE_DIR}/src/*.hpp)

set(mivora_header_units)
foreach(header IN LISTS mivora_checked_headers)
    # Instruction-set headers exist only for translation units built for
    # their instructions: compile them with those, on their architecture.
    set(isa_flags "")
    if(header MATCHES "(_x86|lanes_avx|lanes_avx512)\\.hpp$")
        if(NOT MIVORA_X86_FMA_KERNELS)
            continue()
        endif()
        if(header MATCHES "lanes_avx512\\.hpp$")
            set(isa_flags -mavx512f -mavx2 -mfma)
        elseif(header MATCHES "lanes_avx\\.hpp$")
            set(isa_flags -mavx2 -mfma)
        else()
            set(isa_flags -mfma)
        endif()
    elseif(header MATCHES "_neon\\.hpp$" AND NOT CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64|ARM64)$")
        continue()
    endif()
    string(MAKE_C_IDENTIFIER "${header}" unit)
    set(unit "${CMAKE_CURRENT_BINARY_DIR}/header_check/${unit}.cpp")
    file(CONFIGURE OUTPUT "${unit}" CONTENT "#include \"${PROJECT_SOURCE_DIR}/${header}\"\n" @ONLY)
    if(isa_flags)
        set_property(SOURCE "${unit}" APPEND PROPERTY COMPILE_OPTIONS ${isa_flags})
    endif()
    list(APPEND mivora_header_units "${unit}")
endforeach()

# The library's include paths and language level without a dependency on
# building it: these objects are compiled, never linked.
add_library(mivora_header_check OBJECT ${mivora_header_units})
target_include_directories(mivora_header_check PRIVATE
    ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src)
target_compile_features(mivora_header_check PRIVATE cxx_std_17)
set_target_properties(mivora_header_check PROPERTIES CXX_EXTENSIONS OFF)
target_link_libraries(mivora_header_check PRIVATE mivora_exact_fp mivora_warnings)
# Internal headers keep helpers in unnamed namespaces for their one includer;
# alone, those are unused by design.
target_compile_options(mivora_header_check PRIVATE
    $<$<CXX_COMPILER_ID:GNU,Clang,AppleClang>:-Wno-unused-function -Werror>)
