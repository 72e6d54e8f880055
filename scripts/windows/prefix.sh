# Read by ./windows: what the program is linked with on Windows, each library built once from Debian's own sources into
# $prefix. A library's stamp holds the version that was built and the sum of the lines that built it; while it stands,
# nothing is fetched and nothing built.

cache=${VALVECELL_WINDOWS_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/valvecell-windows}
prefix=$cache/prefix
host=x86_64-w64-mingw32
jobs=${VALVECELL_WINDOWS_JOBS:-2}

# Name and Debian source package, in the order in which they need each other.
libraries=(sqlite3:sqlite3 qtbase:qtbase-opensource-src qtserialport:qtserialport-opensource-src
    qtsvg:qtsvg-opensource-src zlib:zlib libpng:libpng1.6 turbojpeg:libjpeg-turbo sodium:libsodium openssl:openssl
    qwt:qwt libzip:libzip xlsxwriter:libxlsxwriter protobuf:protobuf opencv:opencv)
# Without these the program is built all the same, and says what it lacks.
libraries_optional=(qtserialport)

# The machine's own package sources, asked for source packages, with lists of their own: the system's stay as they are.
apt_sources() {
    [ -z "${apt_ready:-}" ] || return 0
    local apt=$cache/apt file
    mkdir -p "$apt/parts" "$apt/lists/partial"
    for file in /etc/apt/sources.list.d/*.sources; do
        [ ! -e "$file" ] || sed 's/^Types:.*/Types: deb-src/' "$file" >"$apt/parts/${file##*/}"
    done
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        [ ! -e "$file" ] || sed -n 's/^deb /deb-src /p' "$file" >"$apt/parts/${file##*/}"
    done
    printf '%s\n' 'Dir::Etc::sourcelist "/dev/null";' "Dir::Etc::sourceparts \"$apt/parts\";" \
        "Dir::State::lists \"$apt/lists\";" "Dir::Cache::pkgcache \"$apt/packages.bin\";" \
        "Dir::Cache::srcpkgcache \"$apt/sources.bin\";" "APT::Sandbox::User \"$(id -un)\";" >"$apt/apt.conf"
    APT_CONFIG=$apt/apt.conf apt-get update -qq
    apt_ready=yes
}

# Unpacks a Debian source package, with Debian's patches, into $cache/work/NAME, and sets its version; what was unpacked
# for an interrupted build is gone on with. Where the mirror has the makers' own archive but no longer Debian's patches
# for it, that archive is taken as it is.
unpack() {
    local name=$1 source=$2 sum=$3 work=$cache/work/$1 from=$cache/sources/$1 dsc tar
    if [ "$(sed -n 2p "$work/.vc-source" 2>/dev/null)" = "$sum" ]; then
        version=$(sed -n 1p "$work/.vc-source")
        return
    fi
    apt_sources
    mkdir -p "$from" "$cache/work"
    (cd "$from" && APT_CONFIG=$cache/apt/apt.conf apt-get source -qq --download-only "$source") || true
    rm -rf "$work"
    dsc=$(find "$from" -name '*.dsc' -printf '%T@ %p\n' | sort -n | tail -1 | cut -d ' ' -f 2-)
    if [ -n "$dsc" ] && dpkg-source --no-check --no-copy -x "$dsc" "$work"; then
        version=$(sed -n 's/^Version: //p' "$dsc")
    else
        tar=$(find "$from" -name '*.orig.tar.?z*' ! -name '*.asc' | sort | tail -1)
        [ -n "$tar" ] || return 1
        mkdir -p "$work"
        tar xf "$tar" --strip-components 1 -C "$work"
        version=$(basename "$tar" | sed 's/.*_\(.*\)\.orig.*/\1/')-upstream
    fi
    printf '%s\n%s\n' "$version" "$sum" >"$work/.vc-source"
}

# build_library NAME SOURCE: unless its stamp stands.
build_library() {
    local name=$1 source=$2 version='' began=$SECONDS stamp=$cache/stamps/$1 log=$cache/log/$1.log sum
    sum=$(declare -f "build_$name" | cksum)
    [ "$(sed -n 2p "$stamp" 2>/dev/null)" != "$sum" ] || return 0
    mkdir -p "$cache/log" "$cache/stamps" "$prefix/include" "$prefix/lib" "$prefix/bin"
    echo "$(date +%H:%M:%S) building $name; its messages go to $log"
    if ! unpack "$name" "$source" "$sum" >"$log" 2>&1; then
        echo "$name: the mirror does not serve its source; see $log" >&2
        [[ " ${libraries_optional[*]} " == *" $name "* ]]
        return
    fi
    # A shell of its own: within a condition, this one would not stop at the first command that fails.
    if ! nice -n 19 bash -c 'set -e; . "$1/scripts/common.sh"; . "$1/scripts/windows/prefix.sh"; cd "$2"; "build_$3"' \
        - "$root" "$cache/work/$name" "$name" >>"$log" 2>&1; then
        grep -E -A3 'error|Error' "$log" | tail -20 >&2
        echo "$name could not be built; all of it is in $log" >&2
        return 1
    fi
    printf '%s\n%s\n%s\n' "$version" "$sum" "$((SECONDS - began)) s" >"$stamp"
    rm -rf "${cache:?}/work/$name"
}

cmake_library() {
    cmake -S . -B vc-build -G Ninja -DCMAKE_TOOLCHAIN_FILE="$root/cmake/windows/Toolchain.cmake" \
        -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$prefix" -DBUILD_SHARED_LIBS=OFF "$@"
    ninja -C vc-build -j "$jobs" install
}

qt_module() {
    "$prefix/bin/qmake" -qtconf "$prefix/bin/qt.conf" "$@"
    make -j "$jobs"
    make install
}

build_sqlite3() { # Debian's Qt comes without the copy that Qt has of it
    [ -e Makefile ] || ./configure --disable-tcl --disable-readline # its generators run here
    make sqlite3.c sqlite3.h
    $host-gcc -O2 -DSQLITE_THREADSAFE=1 -DSQLITE_ENABLE_COLUMN_METADATA -c sqlite3.c
    install -d "$prefix/include" "$prefix/lib"
    $host-ar rcs "$prefix/lib/libsqlite3.a" sqlite3.o
    install -m 644 sqlite3.h "$prefix/include"
}

# The machine's own qmake, moc, rcc and uic are of the same version and do for the cross-build; no tool is built again.
build_qtbase() {
    local tools=/usr/lib/qt5/bin
    if [ -e .vc-configured ]; then
        make -j "$jobs"
        make install
        return
    fi
    sed -i 's/^ *(cd "$outpath\/qmake"; "$MAKE" -s) || exit 2$/        true/' configure
    sed -i '/qmake-aux.pro/s/qmake\/qmake-aux.pro//' qtbase.pro
    sed -i 's/-lSecur32 -lCrypt32/-lsecur32 -lcrypt32/' src/network/ssl/ssl.pri # names have their case here
    cat >>src/src.pro <<'END'

tools = src_tools_bootstrap src_tools_moc src_tools_rcc src_tools_tracegen src_tools_uic src_tools_qlalr src_tools_qvkgen
SUBDIRS -= $$tools
for(part, SUBDIRS): $${part}.depends -= $$tools
END
    mkdir -p bin "$prefix/bin"
    ln -sf "$tools"/{qmake,moc,rcc,uic} bin
    ln -sf "$tools"/{qmake,moc,rcc,uic} "$prefix/bin"
    printf '[Paths]\nPrefix=%s\nHostPrefix=%s\nTargetSpec=win32-g++\nHostSpec=linux-g++\n' "$prefix" "$prefix" \
        >"$prefix/bin/qt.conf"
    MAKEFLAGS=-j$jobs ./configure -opensource -confirm-license -prefix "$prefix" -xplatform win32-g++ \
        -device-option CROSS_COMPILE=$host- -external-hostbindir "$tools" -release -shared -silent \
        -nomake examples -nomake tests -no-opengl -no-dbus -no-icu -no-openssl -schannel -no-feature-printer -no-feature-xml \
        -no-feature-vulkan -no-feature-vkgen -no-feature-direct2d -no-sql-odbc -sql-sqlite -system-sqlite \
        -I "$prefix/include" -L "$prefix/lib" \
        -qt-zlib -qt-libpng -qt-libjpeg -qt-freetype -qt-harfbuzz -qt-pcre -qt-doubleconversion
    touch .vc-configured
    make -j "$jobs"
    make install
}

build_qtserialport() { qt_module CONFIG+=release; }

build_qtsvg() { qt_module CONFIG+=release; }

build_zlib() { # Debian's sources come without the makefile for Windows
    $host-gcc -O2 -DHAVE_HIDDEN -c adler32.c compress.c crc32.c deflate.c gz*.c inf*.c trees.c uncompr.c zutil.c
    $host-ar rcs "$prefix/lib/libz.a" ./*.o
    install -m 644 zlib.h zconf.h "$prefix/include"
}

build_libpng() { cmake_library -DPNG_SHARED=OFF -DPNG_TESTS=OFF -DPNG_EXECUTABLES=OFF; }

build_turbojpeg() { cmake_library -DENABLE_SHARED=OFF -DWITH_SIMD="$(command -v nasm >/dev/null && echo ON || echo OFF)"; }

build_sodium() {
    [ -e configure ] || autoreconf -fi
    [ -e Makefile ] || ./configure --host=$host --prefix="$prefix" --disable-shared --enable-static --disable-dependency-tracking
    make -C src -j "$jobs" install
}

build_openssl() { # the part that licences are checked with
    [ -e Makefile ] || ./Configure mingw64 --cross-compile-prefix=$host- --prefix="$prefix" --libdir=lib no-shared \
        no-tests no-engine no-module no-legacy no-ssl no-tls no-dtls no-cmp no-cms no-ct no-ocsp no-ts no-srp no-gost \
        no-aria no-bf no-camellia no-cast no-des no-idea no-rc2 no-rc4 no-md4 no-mdc2 no-rmd160 no-seed no-siphash no-sm2 \
        no-sm3 no-sm4 no-whirlpool
    make -j "$jobs" build_generated
    make -j "$jobs" libcrypto.a
    install -m 644 libcrypto.a "$prefix/lib"
    cp -r include/openssl "$prefix/include"
}

build_qwt() { # its plots alone, in the program's own libraries
    sed -i -E 's/^ *QWT_CONFIG *\+= *Qwt(Dll|Designer|OpenGL|MathML|Svg|Examples|Playground|Widgets)$/#&/' qwtconfig.pri
    sed -i '/dpkg-buildflags\|_FORTIFY_SOURCE/d' qwtconfig.pri
    sed -i 's/QT += printsupport/DEFINES += QT_NO_PRINTER/' src/src.pri
    (cd src && "$prefix/bin/qmake" -qtconf "$prefix/bin/qt.conf" CONFIG+=release src.pro && make -j "$jobs")
    find . -name 'libqwt*.a' -exec install -m 644 {} "$prefix/lib/libqwt.a" \;
    install -d "$prefix/include/qwt"
    install -m 644 src/*.h "$prefix/include/qwt"
}

build_libzip() {
    cmake_library -DBUILD_SHARED_LIBS=ON -DENABLE_COMMONCRYPTO=OFF -DENABLE_GNUTLS=OFF -DENABLE_MBEDTLS=OFF -DENABLE_OPENSSL=OFF \
        -DENABLE_WINDOWS_CRYPTO=OFF -DENABLE_BZIP2=OFF -DENABLE_LZMA=OFF -DENABLE_ZSTD=OFF -DBUILD_TOOLS=OFF \
        -DBUILD_REGRESS=OFF -DBUILD_EXAMPLES=OFF -DBUILD_DOC=OFF
}

build_xlsxwriter() { cmake_library -DBUILD_SHARED_LIBS=ON -DBUILD_TESTS=OFF -DBUILD_EXAMPLES=OFF; }

build_protobuf() { # what the learnt file is read with
    cmake_library -Dprotobuf_BUILD_TESTS=OFF -Dprotobuf_BUILD_PROTOC_BINARIES=OFF -Dprotobuf_BUILD_LIBPROTOC=OFF \
        -Dprotobuf_WITH_ZLIB=OFF
}

build_opencv() {
    cmake_library -DBUILD_SHARED_LIBS=ON -DBUILD_LIST=core,imgproc,imgcodecs,calib3d,features2d,flann,dnn \
        -DBUILD_TESTS=OFF -DBUILD_PERF_TESTS=OFF -DBUILD_EXAMPLES=OFF -DBUILD_opencv_apps=OFF -DBUILD_JAVA=OFF \
        -DBUILD_opencv_python3=OFF -DWITH_FFMPEG=OFF -DWITH_GTK=OFF -DWITH_OPENCL=OFF -DWITH_IPP=OFF -DWITH_ITT=OFF \
        -DWITH_TIFF=OFF -DWITH_WEBP=OFF -DWITH_OPENJPEG=OFF -DWITH_JASPER=OFF -DWITH_OPENEXR=OFF -DWITH_EIGEN=OFF \
        -DWITH_LAPACK=OFF -DWITH_QUIRC=OFF -DWITH_ADE=OFF -DWITH_DSHOW=OFF -DWITH_MSMF=OFF -DWITH_WIN32UI=OFF \
        -DWITH_DIRECTX=OFF -DBUILD_ZLIB=OFF -DBUILD_PNG=OFF -DBUILD_JPEG=OFF -DBUILD_PROTOBUF=OFF \
        -DPROTOBUF_UPDATE_FILES=ON -DPROTOBUF_PROTOC_EXECUTABLE="$(command -v protoc)" -DCPU_BASELINE=SSE4_2 -DCPU_DISPATCH=AVX2 \
        -DOPENCV_ENABLE_ALLOCATOR_STATS=OFF -DENABLE_PRECOMPILED_HEADERS=OFF -DCMAKE_CXX_STANDARD=17
}

build_prefix() {
    local each
    [ ${#libraries[@]} -gt 0 ]
    for each in "${libraries[@]}"; do build_library "${each%%:*}" "${each#*:}" || return 1; done
}
