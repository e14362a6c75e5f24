; SPDX-License-Identifier: MIT
; The setup program. packaging/pack.py passes VERSION, OUTPUT, STAGE (the files to install), FILES (generated: which they
; are), ART (icon and pictures), and TARGET where the setup itself must be a 64-bit program.
Unicode true
!pragma warning disable 6012 ; a 64-bit setup program needs no question whether the system has 64 bit
!ifdef TARGET
  Target ${TARGET}
!endif
SetCompressor /SOLID lzma
SetCompressorDictSize 32
ManifestDPIAware true
ManifestSupportedOS all

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Ravlo"
!define SETUP_KEY "Software\Ravlo\Setup"
!define MULTIUSER_EXECUTIONLEVEL Highest
!define MULTIUSER_MUI
!define MULTIUSER_INSTALLMODE_COMMANDLINE
!define MULTIUSER_USE_PROGRAMFILES64
!define MULTIUSER_INSTALLMODE_INSTDIR Ravlo
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_KEY "${SETUP_KEY}"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_VALUENAME Folder
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_KEY "${SETUP_KEY}"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_VALUENAME Mode
!include MultiUser.nsh
!include MUI2.nsh
!include LogicLib.nsh
!include x64.nsh
!include FileFunc.nsh

Name "Ravlo ${VERSION}"
BrandingText "Ravlo ${VERSION}"
OutFile "${OUTPUT}"
ShowInstDetails nevershow
ShowUninstDetails nevershow
VIProductVersion ${VERSION}.0
VIAddVersionKey /LANG=1033 CompanyName "Ravlo"
VIAddVersionKey /LANG=1033 FileDescription "Ravlo setup"
VIAddVersionKey /LANG=1033 FileVersion "${VERSION}"
VIAddVersionKey /LANG=1033 LegalCopyright "MIT licence"
VIAddVersionKey /LANG=1033 ProductName "Ravlo"
VIAddVersionKey /LANG=1033 ProductVersion "${VERSION}"

!define MUI_ICON "${ART}/Ravlo.ico"
!define MUI_UNICON "${ART}/Ravlo.ico"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${ART}/side.bmp"
!define MUI_UNWELCOMEFINISHPAGE_BITMAP "${ART}/side.bmp"
!define MUI_HEADERIMAGE
!define MUI_HEADERIMAGE_RIGHT
!define MUI_HEADERIMAGE_BITMAP "${ART}/head.bmp"
!define MUI_HEADERIMAGE_UNBITMAP "${ART}/head.bmp"
!define MUI_ABORTWARNING

!define MUI_WELCOMEPAGE_TITLE "Ravlo ${VERSION}"
!define MUI_WELCOMEPAGE_TEXT "The music scheduler for radio playout.$\r$\n$\r$\nSetup installs and registers the libraries for 32-bit and 64-bit programs, a small playout host, and the manual. Your stations stay as they are.$\r$\n$\r$\n$_CLICK"
!define MUI_FINISHPAGE_TITLE "Ravlo is installed"
!define MUI_FINISHPAGE_TEXT "The start menu has the library window, the category window, a console and the manual."
!define MUI_FINISHPAGE_SHOWREADME "$INSTDIR\manual.html"
!define MUI_FINISHPAGE_SHOWREADME_TEXT "Read the manual"
!insertmacro MUI_PAGE_WELCOME
!insertmacro MULTIUSER_PAGE_INSTALLMODE
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

Var Native      ; the folder of regsvr32.exe for the system's own width
Var Emulated    ; the one for 32 bit on a 64-bit system; empty where there is none
Var Failure     ; what went wrong; empty while all is well
Var Path        ; the folder that shortcuts start programs from

; Functions of both the installer and the uninstaller.
!macro Shared un

; Says a sentence: in a box or, when silent, to the error output of the caller. Ends with exit status 2.
Function ${un}Refuse
  ${If} ${Silent}
    System::Call 'kernel32::GetStdHandle(i -12) p .R0'
    FileWrite $R0 "$Failure$\r$\n"
  ${Else}
    MessageBox MB_OK|MB_ICONEXCLAMATION "$Failure"
  ${EndIf}
  SetErrorLevel 2
  Quit
FunctionEnd

; A program that has one of these files open would run on with the old one, and the new one could not be written.
Function ${un}RefuseWhileInUse
  StrCpy $Failure ""
  !insertmacro ${un}TryFile "x64\RavloSched.dll"
  !insertmacro ${un}TryFile "x64\RavloBase.dll"
  !insertmacro ${un}TryFile "x64\RavloHost.exe"
  !insertmacro ${un}TryFile "x86\RavloSched.dll"
  !insertmacro ${un}TryFile "x86\RavloBase.dll"
  !insertmacro ${un}TryFile "x86\RavloHost.exe"
  ${If} $Failure != ""
    Call ${un}Refuse
  ${EndIf}
FunctionEnd

Function ${un}FindSystemFolders
  StrCpy $Emulated ""
  ${If} ${RunningX64}
    StrCpy $Native "$WINDIR\System32"
    ${If} ${FileExists} "$WINDIR\Sysnative\regsvr32.exe" ; seen by 32-bit programs only
      StrCpy $Native "$WINDIR\Sysnative"
    ${EndIf}
    StrCpy $Emulated "$WINDIR\SysWOW64"
    ClearErrors
    nsExec::Exec '"$Emulated\cmd.exe" /c exit 0'
    Pop $0
    ${If} $0 != 0
      StrCpy $Emulated "" ; this system runs no 32-bit programs
    ${EndIf}
  ${Else}
    StrCpy $Native "$WINDIR\System32"
  ${EndIf}
FunctionEnd
!macroend

!macro TryFile FILE
  !insertmacro TryFileIn "" "${FILE}"
!macroend
!macro un.TryFile FILE
  !insertmacro TryFileIn "un." "${FILE}"
!macroend
!macro TryFileIn un FILE
  ${If} $Failure == ""
  ${AndIf} ${FileExists} "$INSTDIR\${FILE}"
    ClearErrors
    FileOpen $0 "$INSTDIR\${FILE}" a
    ${If} ${Errors}
      StrCpy $Failure "$INSTDIR\${FILE} is in use or write-protected: close the programs that use Ravlo, then start this again."
    ${Else}
      FileClose $0
    ${EndIf}
  ${EndIf}
!macroend
!insertmacro Shared ""
!insertmacro Shared "un."

; Runs one width's regsvr32 for a library. A failure of the first one is kept.
!macro Register FOLDER OPTIONS FILE
  ${If} $Failure == ""
    ClearErrors
    ExecWait '"${FOLDER}\regsvr32.exe" /s ${OPTIONS} "$INSTDIR\${FILE}"' $0
    ${If} ${Errors}
    ${OrIf} $0 != 0
      StrCpy $Failure "${FILE} could not be registered (regsvr32: $0)."
    ${EndIf}
  ${EndIf}
!macroend
!macro RegisterBoth FOLDER WIDTH
  ${If} $MultiUser.InstallMode == AllUsers
    !insertmacro Register "${FOLDER}" "" "${WIDTH}\RavloBase.dll"
    !insertmacro Register "${FOLDER}" "" "${WIDTH}\RavloSched.dll"
  ${Else}
    !insertmacro Register "${FOLDER}" "/n /i:user" "${WIDTH}\RavloBase.dll"
    !insertmacro Register "${FOLDER}" "/n /i:user" "${WIDTH}\RavloSched.dll"
  ${EndIf}
!macroend
!macro Unregister FOLDER WIDTH
  ${If} ${FileExists} "$INSTDIR\${WIDTH}\RavloSched.dll"
    ${If} $MultiUser.InstallMode == AllUsers
      ExecWait '"${FOLDER}\regsvr32.exe" /s /u "$INSTDIR\${WIDTH}\RavloSched.dll"'
      ExecWait '"${FOLDER}\regsvr32.exe" /s /u "$INSTDIR\${WIDTH}\RavloBase.dll"'
    ${Else}
      ExecWait '"${FOLDER}\regsvr32.exe" /s /u /n /i:user "$INSTDIR\${WIDTH}\RavloSched.dll"'
      ExecWait '"${FOLDER}\regsvr32.exe" /s /u /n /i:user "$INSTDIR\${WIDTH}\RavloBase.dll"'
    ${EndIf}
  ${EndIf}
!macroend

!include "${FILES}" ; InstallCommon, InstallX64, InstallX86, RemoveFiles

!macro Shortcut NAME PROGRAM ARGUMENTS
  CreateShortcut "$SMPROGRAMS\Ravlo\${NAME}.lnk" "${PROGRAM}" '${ARGUMENTS}' "$INSTDIR\Ravlo.ico"
!macroend

; The folder that the command line names (/D=), and the uninstaller's own, go before what the registry says.
Function .onInit
  StrCpy $R9 $INSTDIR
  !insertmacro MULTIUSER_INIT
  ${If} $R9 != ""
    StrCpy $INSTDIR $R9
  ${EndIf}
FunctionEnd
Function un.onInit
  StrCpy $R9 $INSTDIR
  !insertmacro MULTIUSER_UNINIT
  StrCpy $INSTDIR $R9
FunctionEnd

; What an earlier setup installed for the same users, here or in another folder, goes first, and its registration with it.
Function RemoveEarlier
  ReadRegStr $1 SHCTX "${SETUP_KEY}" Folder
  ${If} $1 != ""
  ${AndIf} ${FileExists} "$1\uninstall.exe"
    StrCpy $2 $INSTDIR
    StrCpy $INSTDIR $1
    Call RefuseWhileInUse
    StrCpy $INSTDIR $2
    DetailPrint "Remove the earlier version"
    CopyFiles /SILENT "$1\uninstall.exe" "$PLUGINSDIR\earlier.exe"
    ExecWait '"$PLUGINSDIR\earlier.exe" /S /$MultiUser.InstallMode _?=$1' $0
    ${If} $0 != 0
      StrCpy $Failure "The installed version in $1 could not be removed: remove it from the list of programs, then start this again."
      Call Refuse
    ${EndIf}
    Delete "$1\uninstall.exe"
    RMDir "$1"
  ${EndIf}
FunctionEnd

Section
  InitPluginsDir
  Call RefuseWhileInUse
  Call RemoveEarlier
  Call FindSystemFolders
  SetOverwrite on
  !insertmacro InstallCommon
  ${If} ${RunningX64}
    !insertmacro InstallX64
    ${If} $Emulated != ""
      !insertmacro InstallX86
    ${EndIf}
  ${Else}
    !insertmacro InstallX86
  ${EndIf}
  WriteUninstaller "$INSTDIR\uninstall.exe"
  WriteRegStr SHCTX "${SETUP_KEY}" Folder "$INSTDIR"
  WriteRegStr SHCTX "${SETUP_KEY}" Mode "$MultiUser.InstallMode"
  WriteRegStr SHCTX "${SETUP_KEY}" Version "${VERSION}"

  StrCpy $Failure ""
  DetailPrint "Register the libraries" ; takes longer than the files
  ${If} ${RunningX64}
    StrCpy $Path "$INSTDIR\x64"
    !insertmacro RegisterBoth "$Native" x64
    ${If} $Emulated != ""
      !insertmacro RegisterBoth "$Emulated" x86
    ${EndIf}
  ${Else}
    StrCpy $Path "$INSTDIR\x86"
    !insertmacro RegisterBoth "$Native" x86
  ${EndIf}
  ${If} $Failure != ""
    CopyFiles /SILENT "$INSTDIR\uninstall.exe" "$PLUGINSDIR\failed.exe"
    ExecWait '"$PLUGINSDIR\failed.exe" /S /$MultiUser.InstallMode _?=$INSTDIR'
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    Call Refuse
  ${EndIf}

  ; The windows open the station in the documents: everybody's or, for one user, the user's own.
  CreateDirectory "$DOCUMENTS\Ravlo Station"
  CreateDirectory "$SMPROGRAMS\Ravlo"
  SetOutPath "$DOCUMENTS\Ravlo Station" ; where the programs start
  !insertmacro Shortcut "Library" "$Path\RavloHost.exe" 'library --db library.db --app .'
  !insertmacro Shortcut "Categories" "$Path\RavloHost.exe" 'category --db library.db --app .'
  !insertmacro Shortcut "Console" "$SYSDIR\cmd.exe" '/k ""$INSTDIR\console.cmd" "$Path""'
  !insertmacro Shortcut "Manual" "$INSTDIR\manual.html" ''
  SetOutPath "$INSTDIR"

  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayName "Ravlo"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayVersion "${VERSION}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayIcon "$INSTDIR\Ravlo.ico"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" Publisher "Ravlo"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" InstallLocation "$INSTDIR"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" UninstallString '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode'
  WriteRegStr SHCTX "${UNINSTALL_KEY}" QuietUninstallString '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode /S'
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" NoModify 1
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" NoRepair 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" EstimatedSize $0
SectionEnd

; Only what setup has written: a station in the documents stays, and so does any file that somebody put into the folder.
Section un.Remove
  Call un.RefuseWhileInUse
  Call un.FindSystemFolders
  DetailPrint "Unregister the libraries"
  ${If} ${RunningX64}
    !insertmacro Unregister "$Native" x64
    !insertmacro Unregister "$Emulated" x86
  ${Else}
    !insertmacro Unregister "$Native" x86
  ${EndIf}
  Delete "$SMPROGRAMS\Ravlo\Library.lnk"
  Delete "$SMPROGRAMS\Ravlo\Categories.lnk"
  Delete "$SMPROGRAMS\Ravlo\Console.lnk"
  Delete "$SMPROGRAMS\Ravlo\Manual.lnk"
  RMDir "$SMPROGRAMS\Ravlo"
  RMDir "$DOCUMENTS\Ravlo Station" ; when it is empty: no station was made there
  DeleteRegKey SHCTX "${UNINSTALL_KEY}"
  DeleteRegKey SHCTX "${SETUP_KEY}"
  DeleteRegKey /ifempty SHCTX "Software\Ravlo"
  !insertmacro RemoveFiles
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
SectionEnd
