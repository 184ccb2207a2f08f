# Builds a host of another compiler or language against the unpacked package and has it judge one
# file under Wine. What embed.cmake asks of the hosts for the build's own system holds for these too.
cmake_minimum_required(VERSION 3.25)

include("${CMAKE_CURRENT_LIST_DIR}/build_host.cmake")
set(package_tests "${CMAKE_CURRENT_LIST_DIR}/../package")
include("${package_tests}/make_bank.cmake")
include("${package_tests}/embed.cmake")
