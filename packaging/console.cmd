@echo off
rem Opened by the start menu: a console in which RavloHost can be called by its name. The argument is its folder.
set "PATH=%~1;%PATH%"
RavloHost --version
echo.
echo   RavloHost --help                                        what it can do
echo   RavloHost import --db library.db --csv FILE             reads a library
echo   RavloHost library --db library.db --app .               opens the library window
echo.
echo The station of this folder: %CD%
