# Read by ./windows: the folder that runs as it is, and the installer made of it.

# The libraries that the files of a folder ask for and that are ours to deliver, copied beside them.
copy_libraries() {
    local folder=$1 again=yes file name found
    local places=("$prefix/bin" "$prefix/lib" "$prefix/x64/mingw/bin" "$(dirname "$($host-g++-posix -print-libgcc-file-name)")"
        "/usr/$host/lib" "/usr/$host/bin")
    while [ -n "$again" ]; do
        again=''
        while IFS= read -r name; do
            [ ! -e "$folder/$name" ] || continue
            found=''
            for file in "${places[@]}"; do [ ! -e "$file/$name" ] || { found=$file/$name; break; }; done
            [ -n "$found" ] || continue # the system's own
            cp "$found" "$folder"
            again=yes
        done < <(find "$folder" \( -name '*.dll' -o -name '*.exe' \) -exec $host-objdump -p {} + | sed -n 's/.*DLL Name: //p' | sort -u)
    done
}

# What Qt loads at run time.
copy_qt_plugins() {
    local folder=$1 plugin
    for plugin in platforms/qwindows platforms/qoffscreen styles/qwindowsvistastyle imageformats/qjpeg \
        imageformats/qsvg imageformats/qico iconengines/qsvgicon sqldrivers/qsqlite; do
        [ ! -e "$prefix/plugins/$plugin.dll" ] || install -D "$prefix/plugins/$plugin.dll" "$folder/$plugin.dll"
    done
    printf '[Paths]\nPlugins=.\n' >"$folder/qt.conf"
}

make_folder() {
    local build=$1 folder=$2 program
    rm -rf "$folder"
    mkdir -p "$folder"
    for program in valvecell Report licencetool plcsim wheelgen; do cp "$build/bin/$program.exe" "$folder"; done
    cp "$build"/bin/{valvecell,ksCoreCtrl,ksbengine,ksdesigner,SerialPortTool,QUserInfo}.dll "$folder"
    cp -r "$build"/bin/{docs,language} "$folder"
    cp "$root/LICENSE" "$folder"
    copy_qt_plugins "$folder"
    copy_libraries "$folder"
    find "$folder" \( -name '*.dll' -o -name '*.exe' \) -exec $host-strip --strip-unneeded {} +
}

make_installer() {
    local folder=$1 installer=$2 version
    version=$(sed -n 's/^project(ValveCell VERSION \([0-9.]*\).*/\1/p' "$root/CMakeLists.txt")
    makensis -V2 -NOCD "-DVERSION=$version" "-DFOLDER=$folder" "-DOUTPUT=$installer" "-DRESOURCES=$root/resources/windows" \
        "$root/scripts/windows/installer.nsi"
}
