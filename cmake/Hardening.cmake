# What Debian's own hardening asks for, and no path of the building machine in what is built.
include(CheckPIESupported)
include(CheckCXXCompilerFlag)
check_pie_supported(LANGUAGES C CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

add_compile_options(-Wformat -Wformat-security -fstack-protector-strong)
# A debug build is for its own folder, and shares what the compiler cache has from others.
add_compile_options("$<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${PROJECT_BINARY_DIR}=.;-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>")
# The linker compiles once more when it optimises across units, and notes the folder it does so in.
add_link_options("$<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${PROJECT_BINARY_DIR}=.;-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>")
foreach(flag -fstack-clash-protection -fcf-protection)
  string(MAKE_C_IDENTIFIER "HAVE${flag}" known)
  check_cxx_compiler_flag(${flag} ${known})
  if(${known})
    add_compile_options(${flag})
  endif()
endforeach()
# Fortified functions need an optimising compiler, and get in the way of the sanitizers.
if(NOT TARN_SANITIZE)
  add_compile_options("$<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
endif()
add_link_options(LINKER:-z,relro LINKER:-z,now LINKER:--as-needed)
