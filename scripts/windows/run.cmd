@echo off
rem Runs every program of the kit and writes their output to report.txt in this folder.
setlocal
set "kit=%~dp0"
set "report=%kit%report.txt"
set failed=0
if not exist "%kit%work" mkdir "%kit%work"
cd /d "%kit%work"

>"%report%" echo corvane on Windows
>>"%report%" ver
>>"%report%" echo %PROCESSOR_ARCHITECTURE%, %NUMBER_OF_PROCESSORS% processors
>>"%report%" echo %DATE% %TIME%
>>"%report%" chcp

call :try behaviour_tests.exe
call :try registry_tests.exe
call :try fractions_default.exe
for %%p in (read-with-defaults write-through watch-changes cache-only log-sink) do call :example %%p

rem What one write leaves of a file with blank lines, blanks around = and LF line endings.
copy /y "%kit%layout.cfg" layout.cfg >nul
call :try corvane-config.exe .\layout.cfg set Mail:Port 587
call :show layout.cfg
rem The first of two equal tags is deleted, and the next comes to light.
copy /y "%kit%duplicates.cfg" duplicates.cfg >nul
call :try corvane-config.exe .\duplicates.cfg delete Mail:Port
call :show duplicates.cfg

set "verdict=Everything passed."
if not %failed%==0 set "verdict=Failures: %failed%"
>>"%report%" echo.
>>"%report%" echo %verdict%
echo %verdict%
echo The report is "%report%"
exit /b %failed%

:example
copy /y "%kit%settings.cfg" settings.cfg >nul
call :try %1.exe .\settings.cfg
exit /b 0

:try
echo Running %1
>>"%report%" echo.
>>"%report%" echo === %*
"%kit%bin\%1" %2 %3 %4 %5 >>"%report%" 2>&1
set code=%errorlevel%
>>"%report%" echo === %1 ended with %code%
if not %code%==0 set /a failed+=1
exit /b 0

:show
for %%f in (%1) do >>"%report%" echo %1 has %%~zf bytes:
>>"%report%" type %1
exit /b 0
