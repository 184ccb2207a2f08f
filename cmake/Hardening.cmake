# Flags that make a defect in the product harder to exploit. Every room, library, module and program
# that is installed links `signutils_hardening`; tests and benchmarks get the link flags through the
# rooms. What came of it is tested on the built files (tests/package, tests/windows).

add_library(signutils_hardening INTERFACE)

if(WIN32)
  target_compile_options(signutils_hardening INTERFACE -fstack-protector-strong
    $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE>
    $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
  # The protector's functions come from the compiler's library, which the linker adds for this flag.
  # Any address, above 4 GiB, too; no data is executable.
  target_link_options(signutils_hardening INTERFACE -fstack-protector-strong
    LINKER:--dynamicbase,--high-entropy-va,--nxcompat)
else()
  include(CheckPIESupported)
  check_pie_supported(LANGUAGES C CXX) # -pie for the programs, not -fPIE alone
  include(CheckCXXCompilerFlag)

  set(flags -fstack-protector-strong)
  # Control-flow protection is x86's own; not every compiler knows the probes.
  foreach(flag IN ITEMS -fstack-clash-protection -fcf-protection=full)
    string(MAKE_C_IDENTIFIER "SIGNUTILS_KNOWS${flag}" known)
    check_cxx_compiler_flag(${flag} ${known})
    if(${known})
      list(APPEND flags ${flag})
    endif()
  endforeach()
  target_compile_options(signutils_hardening INTERFACE ${flags})

  # The checked calls of the C library need optimised code; sanitizers check the same calls better.
  if(NOT SIGNUTILS_SANITIZER AND NOT SIGNUTILS_COVERAGE)
    target_compile_options(signutils_hardening INTERFACE
      $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE>
      $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=3>)
  endif()

  # Addresses of functions are resolved at load and cannot be overwritten; no stack is executable.
  target_link_options(signutils_hardening INTERFACE
    LINKER:-z,relro,-z,now,-z,noexecstack)
endif()
