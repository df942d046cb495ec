; The installer, for one user and without an administrator. Made by dist.sh, which gives VERSION, FOLDER (of the files),
; FILES (what the uninstaller takes away) and OUTPUT.
Unicode true
Target amd64-unicode
ManifestDPIAware true
SetCompressor /SOLID lzma
RequestExecutionLevel user

!include MUI2.nsh

Name "Zelk"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\Zelk"
InstallDirRegKey HKCU "Software\Orvane\Zelk\Installed" "Folder"
BrandingText "Zelk ${VERSION}"
VIProductVersion "${VERSION}.0"
VIAddVersionKey /LANG=0 "ProductName" "Zelk"
VIAddVersionKey /LANG=0 "CompanyName" "Orvane"
VIAddVersionKey /LANG=0 "LegalCopyright" "See LICENSE.txt"
VIAddVersionKey /LANG=0 "FileDescription" "Installs Zelk"
VIAddVersionKey /LANG=0 "FileVersion" "${VERSION}"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_FINISHPAGE_RUN "$INSTDIR\zelk.exe"
!insertmacro MUI_PAGE_LICENSE "${FOLDER}\LICENSE.txt"
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\Zelk"

Section "Zelk" program
    SectionIn RO
    SetOutPath "$INSTDIR"
    File /r "${FOLDER}\*"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    WriteRegStr HKCU "Software\Orvane\Zelk\Installed" "Folder" "$INSTDIR"
    WriteRegStr HKCU "${UNINSTALL}" "DisplayName" "Zelk"
    WriteRegStr HKCU "${UNINSTALL}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${UNINSTALL}" "Publisher" "Orvane"
    WriteRegStr HKCU "${UNINSTALL}" "DisplayIcon" "$INSTDIR\zelk.exe"
    WriteRegStr HKCU "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKCU "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKCU "${UNINSTALL}" "NoModify" 1
    WriteRegDWORD HKCU "${UNINSTALL}" "NoRepair" 1
    SectionGetSize ${program} $0
    WriteRegDWORD HKCU "${UNINSTALL}" "EstimatedSize" $0
SectionEnd

Section "Start menu entry" menu
    CreateShortcut "$SMPROGRAMS\Zelk.lnk" "$INSTDIR\zelk.exe"
SectionEnd

; The program knows how.
Section /o "Offer Zelk for .swf and .zelk files" types
    ExecWait '"$INSTDIR\zelk.exe" --associate'
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
    !insertmacro MUI_DESCRIPTION_TEXT ${program} "The editor, and zelkc for the command line."
    !insertmacro MUI_DESCRIPTION_TEXT ${menu} "An entry in your start menu."
    !insertmacro MUI_DESCRIPTION_TEXT ${types} "Zelk is among the programs that the file manager offers for movies. Zelk's settings can do this later, too."
!insertmacro MUI_FUNCTION_DESCRIPTION_END

; Only what was installed: the folder may hold files of the user's. The settings stay, for another version.
Section "Uninstall"
    ExecWait '"$INSTDIR\zelk.exe" --dissociate'
    !include "${FILES}"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    Delete "$SMPROGRAMS\Zelk.lnk"
    DeleteRegKey HKCU "${UNINSTALL}"
    DeleteRegKey HKCU "Software\Orvane\Zelk\Installed"
SectionEnd
