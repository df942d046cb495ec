# Cross-compiles for 64-bit Windows. The libraries are those that packaging/windows/libraries.sh has built, zlib Debian's.
include(${CMAKE_CURRENT_LIST_DIR}/../packaging/windows/toolchain.cmake)

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
cmake_path(SET libraries NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../build/windows-libraries/prefix)
set(CMAKE_FIND_ROOT_PATH ${libraries} /usr/${triple} ${headers})
set(ZLIB_LIBRARY /usr/${triple}/lib/libz.a CACHE FILEPATH "Found before it would be the library of a DLL.")
# The tools of Qt that run while something is built are those of this machine.
set(QT_HOST_PATH /usr CACHE PATH "")
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/x86_64-linux-gnu/cmake CACHE PATH "")
