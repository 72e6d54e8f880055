# Windows programs with Debian's MinGW-w64 and the libraries that ./windows has built.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(vc_host x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${vc_host}-gcc-posix)
set(CMAKE_CXX_COMPILER ${vc_host}-g++-posix)
set(CMAKE_RC_COMPILER ${vc_host}-windres)

if(DEFINED ENV{VALVECELL_WINDOWS_CACHE})
    set(vc_cache "$ENV{VALVECELL_WINDOWS_CACHE}")
elseif(DEFINED ENV{XDG_CACHE_HOME})
    set(vc_cache "$ENV{XDG_CACHE_HOME}/valvecell-windows")
else()
    set(vc_cache "$ENV{HOME}/.cache/valvecell-windows")
endif()
set(VALVECELL_WINDOWS_PREFIX "${vc_cache}/prefix")

set(CMAKE_FIND_ROOT_PATH "${VALVECELL_WINDOWS_PREFIX}" /usr/${vc_host})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
foreach(kind LIBRARY INCLUDE PACKAGE)
    set(CMAKE_FIND_ROOT_PATH_MODE_${kind} ONLY)
endforeach()
set(ENV{PKG_CONFIG_LIBDIR} "${VALVECELL_WINDOWS_PREFIX}/lib/pkgconfig")

# Translations are made by this machine's own tool.
file(GLOB vc_linguist /usr/lib/*/cmake/Qt5LinguistTools)
set(Qt5LinguistTools_DIR "${vc_linguist}" CACHE PATH "The host's lrelease")

set(OPENSSL_USE_STATIC_LIBS ON)
