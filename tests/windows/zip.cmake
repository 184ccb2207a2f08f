# Makes the package, unpacks it into an empty folder, registers its engine, and has its signcheck and a
# host built against it judge an order file.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${WORK}")
set(unpacked "${WORK}/empty folder")
file(MAKE_DIRECTORY "${unpacked}")
execute_process(COMMAND "${CPACK}" --config "${BUILD}/CPackConfig.cmake" -B "${WORK}/package"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(GLOB zip "${WORK}/package/*.zip")
execute_process(COMMAND "${CMAKE_COMMAND}" -E tar xf "${zip}"
  WORKING_DIRECTORY "${unpacked}" COMMAND_ERROR_IS_FATAL ANY)
file(GLOB top "${unpacked}/*")
set(package "${top}")

foreach(file IN ITEMS README.md bin/signutils.dll bin/signutils-engine.dll bin/signcheck.exe
        lib/libsignutils.dll.a lib/signutils.def include/signutils/signutils.h
        include/signutils/signutils_c.h share/signutils/python/signutils/__init__.py)
  if(NOT EXISTS "${package}/${file}")
    message(FATAL_ERROR "the package has no ${file}")
  endif()
endforeach()

execute_process(
  COMMAND "${COMPILER}" -std=c++20 -static "${HOST}" -I "${package}/include" -L "${package}/lib"
          -l:libsignutils.dll.a -lole32 -o "${package}/bin/zip_host.exe"
  COMMAND_ERROR_IS_FATAL ANY)

set(ENV{SIGNUTILS_SPOOL} "${WORK}/spool")
set(ENV{SIGNUTILS_HANDOFF} "${WORK}/handoff")
set(database "${WORK}/bank.db")
set(ENV{SIGNCHECK_DB} "Driver=SQLite3;Database=${database}")
set(order "${WORK}/order.xml")
file(COPY_FILE "${ORDERS}/03-dupont-workshop.xml" "${order}")

# expect(<exit status> <regular expression of the output> <program> <argument>...)
function(expect status text program)
  execute_process(COMMAND "${WINE}" "${package}/bin/${program}" ${ARGN}
    WORKING_DIRECTORY "${WORK}"
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  if(NOT result EQUAL status OR NOT output MATCHES "${text}")
    message(FATAL_ERROR "${program} ${ARGN}: expected ${status} and '${text}', "
                        "got ${result} and '${output}'\n${errors}")
  endif()
  message("${output}")
endfunction()

function(register)
  execute_process(COMMAND "${WINE}" regsvr32 ${ARGN} /s "${package}/bin/signutils-engine.dll"
    COMMAND_ERROR_IS_FATAL ANY)
endfunction()

expect(0 "" signcheck.exe init --sample)
expect(1 "REFUSED" signcheck.exe check "${order}" --partner DUPONTSA
  --service CCT --client TRESOR --protocol 9 --type 1 --signers "Élodie Lefèvre"
  --total 64200.00 --largest 20000.00 --currency EUR)
expect(0 "Lefèvre" signcheck.exe history)

set(judged "verdict 2, ran 1, amounts known 1, total 64200.00, refused texts 1")
set(unjudged "verdict 1, ran 1, amounts known 0, total 0.00, refused texts 1")
expect(0 "${unjudged}" zip_host.exe "${database}" "${order}")
register()
expect(0 "${judged}" zip_host.exe "${database}" "${order}")
register(/u)
