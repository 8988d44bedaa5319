# The parts around the library (tests, benchmarks, the tool) need packages a
# bare machine may lack. Each MIVORA_BUILD_<PART> is ON, OFF or AUTO. AUTO,
# the default at top level, builds the part when its packages are found and
# otherwise leaves it out, naming in one note what to install; ON insists and
# stops with the same list; OFF looks for nothing.

# mivora_part(VAR DOC DEFAULT): declare the cache entry.
function(mivora_part var doc default)
    set(${var} ${default} CACHE STRING "${doc}: ON, OFF, or AUTO (built when its packages are found)")
    set_property(CACHE ${var} PROPERTY STRINGS AUTO ON OFF)
endfunction()

# mivora_resolve_part(VAR WHAT "DEBIAN PACKAGES" FIND_PACKAGE_NAME...): look
# for the packages and set VAR to ON or OFF for the rest of the configure.
function(mivora_resolve_part var what debian)
    set(value "${${var}}")
    if(NOT value)
        set(${var} OFF PARENT_SCOPE)
        return()
    endif()
    set(missing)
    foreach(package IN LISTS ARGN)
        find_package(${package} QUIET)
        if(NOT ${package}_FOUND)
            list(APPEND missing ${package})
        endif()
    endforeach()
    if(NOT missing)
        set(${var} ON PARENT_SCOPE)
        return()
    endif()
    list(JOIN missing ", " missing)
    if(NOT value STREQUAL "AUTO")
        message(FATAL_ERROR "${var} is ${value}, but ${what} cannot be built: ${missing} not found. "
            "Install ${debian} (Debian/Ubuntu), or configure with -D${var}=OFF.")
    endif()
    set(${var} OFF PARENT_SCOPE)
    set_property(GLOBAL APPEND PROPERTY MIVORA_PARTS_LEFT_OUT "${what} (${missing} not found)")
    set_property(GLOBAL APPEND PROPERTY MIVORA_PACKAGES_TO_INSTALL ${debian})
endfunction()

# One note for every part AUTO left out.
function(mivora_report_left_out_parts)
    get_property(parts GLOBAL PROPERTY MIVORA_PARTS_LEFT_OUT)
    if(NOT parts)
        return()
    endif()
    get_property(packages GLOBAL PROPERTY MIVORA_PACKAGES_TO_INSTALL)
    list(JOIN parts ", " parts)
    list(JOIN packages " " packages)
    message(NOTICE "Mivora: leaving out ${parts}. "
        "To build everything, install ${packages} (Debian/Ubuntu) and configure again.")
endfunction()
