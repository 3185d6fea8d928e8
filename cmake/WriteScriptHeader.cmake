# Writes SOURCE as a C++ string constant into HEADER: cmake -DSOURCE=… -DHEADER=… -DNAME=… -P WriteScriptHeader.cmake
file(READ "${SOURCE}" text)
file(WRITE "${HEADER}.new" "#pragma once\n\ninline constexpr char ${NAME}[] = R\"tarn-js(${text})tarn-js\";\n")
file(COPY_FILE "${HEADER}.new" "${HEADER}" ONLY_IF_DIFFERENT)
