# Checks that FMA3/AVX code stays inside the FMA3 build of the kernels, which
# runs only after the CPU has been asked: its object must export nothing but
# its own entry points (a shared inline or template copy built for FMA3 could
# be the one the portable path ends up calling), and no other object of the
# library may contain a VEX-encoded instruction.
# Run by ctest with -DNM=<nm> -DOBJDUMP=<objdump> -DOBJECTS=<library objects>.
set(fmaObject "")
set(otherObjects "")
foreach(obj IN LISTS OBJECTS)
    if(obj MATCHES "kernels_x86_fma")
        set(fmaObject "${obj}")
    else()
        list(APPEND otherObjects "${obj}")
    endif()
endforeach()
if(NOT fmaObject)
    message(FATAL_ERROR "no kernels_x86_fma object among: ${OBJECTS}")
endif()

execute_process(COMMAND "${NM}" --defined-only --extern-only -C "${fmaObject}"
    OUTPUT_VARIABLE symbols RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
    message(FATAL_ERROR "${NM} failed on ${fmaObject}")
endif()
string(REPLACE "\n" ";" lines "${symbols}")
set(entryPoints 0)
set(strays "")
foreach(line IN LISTS lines)
    # "<address> <type> <name>"; code types: T (text), W (weak), i (ifunc), u (unique).
    if(line MATCHES "^[0-9a-fA-F]+ ([TWiu]) (.*)$")
        set(name "${CMAKE_MATCH_2}")
        if(name MATCHES "^Mivora::detail::x86fma::")
            math(EXPR entryPoints "${entryPoints} + 1")
        else()
            list(APPEND strays "${name}")
        endif()
    endif()
endforeach()
if(strays)
    message(FATAL_ERROR "kernels_x86_fma exports code outside its namespace:\n  ${strays}")
endif()
if(entryPoints LESS 2)
    message(FATAL_ERROR "kernels_x86_fma exports ${entryPoints} entry points, expected processBlock and processSample")
endif()

foreach(obj IN LISTS otherObjects)
    execute_process(COMMAND "${OBJDUMP}" -d --no-show-raw-insn "${obj}" OUTPUT_VARIABLE code RESULT_VARIABLE rc)
    if(NOT rc EQUAL 0)
        message(FATAL_ERROR "${OBJDUMP} failed on ${obj}")
    endif()
    # Disassembly lines read "<addr>:<tab><mnemonic> ..."; VEX mnemonics start with v.
    string(REGEX MATCH ":\t(v[a-z0-9]+)[ \t\n]" vex "${code}")
    if(vex)
        message(FATAL_ERROR "${obj} contains a VEX instruction (${CMAKE_MATCH_1}) outside the FMA3 kernels")
    endif()
endforeach()
message(STATUS "FMA3 code confined to ${fmaObject} (${entryPoints} entry points)")
