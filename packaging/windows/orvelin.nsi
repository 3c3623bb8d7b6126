; The installer for Windows, for one user and without administrator rights.
; makensis -DVERSION=... -DSOURCE=FOLDER -DRESULT=FILE orvelin.nsi
Target amd64-unicode
SetCompressor /SOLID lzma
Name "Orvelin ${VERSION}"
OutFile "${RESULT}"
RequestExecutionLevel user
InstallDir "$LOCALAPPDATA\Programs\Orvelin"
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\Orvelin"
InstallDirRegKey HKCU "${UNINSTALL}" "InstallLocation"
ShowInstDetails nevershow
Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

Section
  SetOutPath "$INSTDIR"
  File "${SOURCE}\orvelin.exe"
  File "${SOURCE}\orvelin-play.exe"
  File "${SOURCE}\orvelin-analyse.exe"
  File "${SOURCE}\orvelin-book.exe"
  File "${SOURCE}\Orvelin.bin"
  File "${SOURCE}\START.txt"
  File "${SOURCE}\LICENSE"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayName" "Orvelin ${VERSION}"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegDWORD HKCU "${UNINSTALL}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL}" "NoRepair" 1
SectionEnd

; What others have put into the folder stays.
Section Uninstall
  Delete "$INSTDIR\orvelin.exe"
  Delete "$INSTDIR\orvelin-play.exe"
  Delete "$INSTDIR\orvelin-analyse.exe"
  Delete "$INSTDIR\orvelin-book.exe"
  Delete "$INSTDIR\Orvelin.bin"
  Delete "$INSTDIR\START.txt"
  Delete "$INSTDIR\LICENSE"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  DeleteRegKey HKCU "${UNINSTALL}"
SectionEnd
