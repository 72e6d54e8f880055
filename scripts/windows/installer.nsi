; Made by ./windows with VERSION, FOLDER (what is installed), RESOURCES and OUTPUT.
Target amd64-unicode
ManifestDPIAware true
SetCompressor /SOLID lzma
RequestExecutionLevel admin

!include MUI2.nsh
!include x64.nsh

Name "ValveCell"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES64\ValveCell"
InstallDirRegKey HKLM "Software\ValveCell" "InstallDir"
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "ValveCell"
VIAddVersionKey FileDescription "ValveCell"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey LegalCopyright "See LICENSE"

!define MUI_ICON "${RESOURCES}\app.ico"
!define MUI_UNICON "${RESOURCES}\app.ico"
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\ValveCell"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "SimpChinese"
!insertmacro MUI_LANGUAGE "English"

LangString InUse ${LANG_SIMPCHINESE} "程序正在运行。请先关闭ValveCell，再继续。"
LangString InUse ${LANG_ENGLISH} "ValveCell is running. Please close it, then continue."

Var Home

Function .onInit
    ${IfNot} ${RunningX64}
        Abort
    ${EndIf}
    SetRegView 64
    SetShellVarContext all
FunctionEnd

Function un.onInit
    SetRegView 64
    SetShellVarContext all
FunctionEnd

Section
    ; The files of a running program cannot be replaced.
    again:
    ClearErrors
    ${If} ${FileExists} "$INSTDIR\valvecell.exe"
        FileOpen $0 "$INSTDIR\valvecell.exe" a
        ${If} ${Errors}
            MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(InUse)" /SD IDCANCEL IDRETRY again
            Abort
        ${EndIf}
        FileClose $0
    ${EndIf}

    SetOutPath "$INSTDIR"
    File /r "${FOLDER}/*"
    WriteUninstaller "$INSTDIR\uninstall.exe"

    ; All files of the cell lie in its home, which every user of the machine may write to; it outlives the program.
    SetShellVarContext all
    StrCpy $Home "$APPDATA\ValveCell"
    CreateDirectory "$Home"
    nsExec::Exec 'icacls "$Home" /grant *S-1-5-32-545:(OI)(CI)M'
    Pop $0

    SetOutPath "$INSTDIR"
    CreateDirectory "$SMPROGRAMS\ValveCell"
    CreateShortcut "$SMPROGRAMS\ValveCell\ValveCell.lnk" "$INSTDIR\valvecell.exe" '--home "$Home"'
    CreateShortcut "$SMPROGRAMS\ValveCell\Report.lnk" "$INSTDIR\Report.exe" '--home "$Home"'
    CreateShortcut "$DESKTOP\ValveCell.lnk" "$INSTDIR\valvecell.exe" '--home "$Home"'

    WriteRegStr HKLM "Software\ValveCell" "InstallDir" "$INSTDIR"
    WriteRegStr HKLM "${UNINSTALL}" "DisplayName" "ValveCell"
    WriteRegStr HKLM "${UNINSTALL}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKLM "${UNINSTALL}" "DisplayIcon" "$INSTDIR\valvecell.exe"
    WriteRegStr HKLM "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
SectionEnd

Section Uninstall
    Delete "$SMPROGRAMS\ValveCell\ValveCell.lnk"
    Delete "$SMPROGRAMS\ValveCell\Report.lnk"
    RMDir "$SMPROGRAMS\ValveCell"
    Delete "$DESKTOP\ValveCell.lnk"
    ; The program's own folder and files, by name: whatever else somebody put there stays, and so does the home.
    RMDir /r "$INSTDIR\docs"
    RMDir /r "$INSTDIR\language"
    RMDir /r "$INSTDIR\platforms"
    RMDir /r "$INSTDIR\styles"
    RMDir /r "$INSTDIR\imageformats"
    RMDir /r "$INSTDIR\iconengines"
    RMDir /r "$INSTDIR\sqldrivers"
    Delete "$INSTDIR\*.dll"
    Delete "$INSTDIR\valvecell.exe"
    Delete "$INSTDIR\Report.exe"
    Delete "$INSTDIR\licencetool.exe"
    Delete "$INSTDIR\plcsim.exe"
    Delete "$INSTDIR\wheelgen.exe"
    Delete "$INSTDIR\qt.conf"
    Delete "$INSTDIR\LICENSE"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    DeleteRegKey HKLM "${UNINSTALL}"
    DeleteRegKey HKLM "Software\ValveCell"
SectionEnd
