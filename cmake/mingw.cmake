# Cross-compiles for 64-bit Windows with mingw-w64, in the variant that has std::thread. The programs need no DLL but
# those of Windows.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(triple x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triple}-g++-posix)
set(CMAKE_RC_COMPILER ${triple}-windres)
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)

# Header-only libraries are those of this machine. /usr/include itself would bring in the C library's headers too, so that
# the build folder serves as a prefix in which only these can be found.
set(headers ${CMAKE_BINARY_DIR}/headers)
get_property(inTryCompile GLOBAL PROPERTY IN_TRY_COMPILE)
if(NOT inTryCompile)
    file(MAKE_DIRECTORY ${headers}/include ${headers}/share/cmake)
    foreach(folder include/boost include/CLI include/nlohmann include/rapidxml share/cmake/CLI11 share/cmake/nlohmann_json)
        file(CREATE_LINK /usr/${folder} ${headers}/${folder} SYMBOLIC)
    endforeach()
endif()
set(Boost_NO_BOOST_CMAKE ON) # Boost's own package file names /usr/include.
set(CMAKE_FIND_ROOT_PATH /usr/${triple} ${headers})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ZLIB_LIBRARY /usr/${triple}/lib/libz.a CACHE FILEPATH "Found before it would be the library of a DLL.")
