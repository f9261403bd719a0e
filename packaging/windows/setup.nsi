; The setup program: for all users where it may, else for the one who runs it. package.sh gives
; VERSION, SIZE (KiB), FILES (what to install), LISTS (install.nsh, remove_files.nsh and
; remove_folders.nsh, with a line for each), ICON and OUTPUT. Silent: /S, then /AllUsers or
; /CurrentUser, and /D=FOLDER as the last word, without quotes.
Target amd64-unicode
SetCompressor /SOLID lzma
Name "Merivane"
OutFile "${OUTPUT}"
AllowSkipFiles off
ManifestDPIAware true
BrandingText "Merivane ${VERSION}"

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Merivane"
!define OPEN_KEY "Software\Classes\Applications\merivane.exe"
!define MENU "$SMPROGRAMS\Merivane"

!define MULTIUSER_EXECUTIONLEVEL Highest
!define MULTIUSER_MUI
!define MULTIUSER_INSTALLMODE_COMMANDLINE
!define MULTIUSER_USE_PROGRAMFILES64
!define MULTIUSER_INSTALLMODE_INSTDIR "Merivane"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_KEY "${UNINSTALL_KEY}"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_VALUENAME "InstallLocation"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_KEY "${UNINSTALL_KEY}"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_VALUENAME "InstallLocation"
!include MultiUser.nsh
!include MUI2.nsh
!include LogicLib.nsh
!include WinVer.nsh

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!insertmacro MULTIUSER_PAGE_INSTALLMODE
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!if /FileExists "${FILES}/merivane.exe"
  ; By the desktop, so that it runs with the rights of the user and not of the setup program.
  !define MUI_FINISHPAGE_RUN "$WINDIR\explorer.exe"
  !define MUI_FINISHPAGE_RUN_PARAMETERS "$\"$INSTDIR\merivane.exe$\""
  !define MUI_FINISHPAGE_RUN_TEXT "Run Merivane"
  !insertmacro MUI_PAGE_FINISH
!endif
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

VIProductVersion "${VERSION}.0"
VIAddVersionKey /LANG=${LANG_ENGLISH} "ProductName" "Merivane"
VIAddVersionKey /LANG=${LANG_ENGLISH} "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=${LANG_ENGLISH} "CompanyName" "Vorn"
VIAddVersionKey /LANG=${LANG_ENGLISH} "FileDescription" "Merivane setup"
VIAddVersionKey /LANG=${LANG_ENGLISH} "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=${LANG_ENGLISH} "LegalCopyright" "Vorn. Licence: Apache-2.0"

Function .onInit
  ${IfNot} ${AtLeastWin10}
    MessageBox MB_OK|MB_ICONSTOP "Merivane needs Windows 10 or later." /SD IDOK
    SetErrorLevel 1
    Quit
  ${EndIf}
  StrCpy $0 $INSTDIR  ; what /D= names, which the next line forgets
  !insertmacro MULTIUSER_INIT
  ${If} $0 != ""
    StrCpy $INSTDIR $0
  ${EndIf}
FunctionEnd

Function un.onInit
  !insertmacro MULTIUSER_UNINIT
FunctionEnd

; Among the programs of "Open with", and nobody's first choice.
!macro OfferFor ENDING
  WriteRegStr SHCTX "${OPEN_KEY}\SupportedTypes" "${ENDING}" ""
!macroend

; What an earlier version installed, here or in another folder, goes first.
Function RemoveEarlier
  ReadRegStr $0 SHCTX "${UNINSTALL_KEY}" "InstallLocation"
  ${If} $0 == ""
  ${OrIfNot} ${FileExists} "$0\uninstall.exe"
    Return
  ${EndIf}
  ExecWait '"$0\uninstall.exe" /S /$MultiUser.InstallMode _?=$0' $1
  ${If} $1 != 0
    MessageBox MB_OK|MB_ICONSTOP "The installed version can't be removed from $0. Close Merivane, then run this setup again." /SD IDOK
    SetErrorLevel 1
    Abort
  ${EndIf}
  Delete "$0\uninstall.exe"
  RMDir "$0"
FunctionEnd

Section
  Call RemoveEarlier
  SetOutPath "$INSTDIR"
  !include "${LISTS}/install.nsh"
  WriteUninstaller "$INSTDIR\uninstall.exe"

  CreateDirectory "${MENU}"
  !if /FileExists "${FILES}/merivane.exe"
    CreateShortCut "${MENU}\Merivane.lnk" "$INSTDIR\merivane.exe"
    CreateShortCut "$SENDTO\Merivane.lnk" "$INSTDIR\merivane.exe"
    CreateShortCut "${MENU}\Merivane Samples.lnk" "$INSTDIR\samples"
    WriteRegStr SHCTX "${OPEN_KEY}" "FriendlyAppName" "Merivane"
    WriteRegStr SHCTX "${OPEN_KEY}\shell\open\command" "" '"$INSTDIR\merivane.exe" "%1"'
    !insertmacro OfferFor ".mpx"
    !insertmacro OfferFor ".mdb"
    !insertmacro OfferFor ".xml"
    !insertmacro OfferFor ".txt"
  !endif
  !if /FileExists "${FILES}/merivane.chm"
    CreateShortCut "${MENU}\Merivane Help.lnk" "$INSTDIR\merivane.chm"
  !endif
  CreateShortCut "${MENU}\Merivane Command Prompt.lnk" "$SYSDIR\cmd.exe" \
    '/k "cd /d "%USERPROFILE%" & set "PATH=$INSTDIR;%PATH%""' "$INSTDIR\merivane-batch.exe"
  CreateShortCut "${MENU}\Uninstall Merivane.lnk" "$INSTDIR\uninstall.exe" "/$MultiUser.InstallMode"

  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayName" "Merivane"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\merivane-batch.exe"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "Publisher" "Vorn"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "URLInfoAbout" "https://www.vorn.example/"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode'
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S /$MultiUser.InstallMode'
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "EstimatedSize" ${SIZE}
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoRepair" 1
SectionEnd

; Only what was installed: a user's own file in the folder stays, and the folder with it. Nothing is
; touched while one of the programs runs or the help is open.
!macro RequireUnused NAME
  IfFileExists "$INSTDIR\${NAME}" 0 +4
  FileOpen $0 "$INSTDIR\${NAME}" a
  IfErrors in_use
  FileClose $0
!macroend

Section Uninstall
  ClearErrors
  !insertmacro RequireUnused merivane-batch.exe
  !insertmacro RequireUnused merivane-access.exe
  !insertmacro RequireUnused merivane-layout.exe
  !insertmacro RequireUnused merivane.chm
  Delete "$INSTDIR\merivane.exe"
  IfErrors in_use
  !include "${LISTS}/remove_files.nsh"
  IfErrors in_use
  !include "${LISTS}/remove_folders.nsh"
  Delete "${MENU}\Merivane.lnk"
  Delete "$SENDTO\Merivane.lnk"
  DeleteRegKey SHCTX "${OPEN_KEY}"
  Delete "${MENU}\Merivane Samples.lnk"
  Delete "${MENU}\Merivane Help.lnk"
  Delete "${MENU}\Merivane Command Prompt.lnk"
  Delete "${MENU}\Uninstall Merivane.lnk"
  RMDir "${MENU}"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  DeleteRegKey SHCTX "${UNINSTALL_KEY}"
  Return

in_use:
  MessageBox MB_OK|MB_ICONSTOP "A file in $INSTDIR is in use. Close Merivane, then uninstall again." /SD IDOK
  SetErrorLevel 1
  Abort
SectionEnd
