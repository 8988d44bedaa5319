# Checks that code for instruction sets beyond the baseline (FMA3, AVX2,
# AVX-512) stays inside the builds made for them (kernels, elementary
# functions), which run only after the CPU has been asked: each such object
# must export nothing but its own entry points (a shared inline or template
# copy built for a wider ISA could be the one the portable path ends up
# calling), and no other object of the library may contain a VEX- or
# EVEX-encoded instruction.
# Run by ctest with -DNM=<nm> -DOBJDUMP=<objdump> -DOBJECTS=<library objects>.
cmake_minimum_required(VERSION 3.25)

# Object name pattern -> the namespace its entry points live in.
set(isaObjects "kernels_x86_fma;channel_kernels_avx2;channel_kernels_avx512;entry_points_x86_fma")
set(isaNamespaces "detail::x86fma;detail::x86avx2;detail::x86avx512;math::x86fma")

set(otherObjects "")
set(found "")
foreach(obj IN LISTS OBJECTS)
    set(isIsa FALSE)
    foreach(i RANGE 3)
        list(GET isaObjects ${i} pattern)
        if(obj MATCHES "/${pattern}\\.cpp\\.o(bj)?$")
            list(GET isaNamespaces ${i} ns)
            list(APPEND found "${pattern}")
            set(isIsa TRUE)
            execute_process(COMMAND "${NM}" --defined-only --extern-only -C "${obj}"
                OUTPUT_VARIABLE symbols RESULT_VARIABLE rc)
            if(NOT rc EQUAL 0)
                message(FATAL_ERROR "${NM} failed on ${obj}")
            endif()
            string(REPLACE "\n" ";" lines "${symbols}")
            set(entryPoints 0)
            set(strays "")
            foreach(line IN LISTS lines)
                # "<address> <type> <name>"; code types: T (text), W (weak), i (ifunc), u (unique).
                if(line MATCHES "^[0-9a-fA-F]+ ([TWiu]) (.*)$")
                    set(name "${CMAKE_MATCH_2}")
                    if(name MATCHES "^Mivora::${ns}::")
                        math(EXPR entryPoints "${entryPoints} + 1")
                    else()
                        list(APPEND strays "${name}")
                    endif()
                endif()
            endforeach()
            if(strays)
                message(FATAL_ERROR "${pattern} exports code outside its namespace:\n  ${strays}")
            endif()
            if(entryPoints LESS 2)
                message(FATAL_ERROR "${pattern} exports ${entryPoints} entry points, expected 2")
            endif()
            message(STATUS "${pattern}: ${entryPoints} entry points in Mivora::${ns}")
        endif()
    endforeach()
    if(NOT isIsa)
        list(APPEND otherObjects "${obj}")
    endif()
endforeach()
foreach(pattern IN LISTS isaObjects)
    if(NOT pattern IN_LIST found)
        message(FATAL_ERROR "no ${pattern} object among: ${OBJECTS}")
    endif()
endforeach()

foreach(obj IN LISTS otherObjects)
    execute_process(COMMAND "${OBJDUMP}" -d --no-show-raw-insn "${obj}" OUTPUT_VARIABLE code RESULT_VARIABLE rc)
    if(NOT rc EQUAL 0)
        message(FATAL_ERROR "${OBJDUMP} failed on ${obj}")
    endif()
    # Disassembly lines read "<addr>:<tab><mnemonic> ..."; VEX and EVEX mnemonics start with v.
    string(REGEX MATCH ":\t(v[a-z0-9]+)[ \t\n]" vex "${code}")
    if(vex)
        message(FATAL_ERROR "${obj} contains a VEX instruction (${CMAKE_MATCH_1}) outside the wider-ISA kernels")
    endif()
endforeach()
