@echo off
rem Builds the kit's sources with MSVC, if it is installed, and runs their tests. Writes report-msvc.txt to this folder.
setlocal
set "kit=%~dp0"
set "report=%kit%report-msvc.txt"
set "vswhere=%ProgramFiles(x86)%\Microsoft Visual Studio\Installer\vswhere.exe"
set vs=
if not exist "%vswhere%" goto none
for /f "usebackq delims=" %%p in (`"%vswhere%" -latest -products * -requires Microsoft.VisualStudio.Component.VC.Tools.x86.x64 -property installationPath`) do set "vs=%%p"
if not defined vs goto none

set verdict=The build failed.
call "%vs%\VC\Auxiliary\Build\vcvars64.bat" >"%report%" 2>&1
where cmake >nul 2>nul || set "PATH=%vs%\Common7\IDE\CommonExtensions\Microsoft\CMake\CMake\bin;%PATH%"
echo Building
cmake -S "%kit%source" -B "%kit%msvc" -G "NMake Makefiles" -D CMAKE_BUILD_TYPE=Release "-DCORVANE_GOOGLETEST=%kit%googletest" >>"%report%" 2>&1 || goto done
cmake --build "%kit%msvc" >>"%report%" 2>&1 || goto done
set verdict=Some of the tests failed.
echo Testing
ctest --test-dir "%kit%msvc" --output-on-failure >>"%report%" 2>&1 || goto done
set verdict=Everything passed.
>>"%report%" echo %verdict%
echo %verdict% The report is "%report%"
exit /b 0

:done
>>"%report%" echo %verdict%
echo %verdict% The report is "%report%"
exit /b 1

:none
echo MSVC is not installed: this needs the component "MSVC x64/x86 build tools".
exit /b 2
