// SPDX-License-Identifier: MIT
#include "base/Utf8.h"
#include "comkit/Errors.h"
#include "host/client/Commands.h"

#include <algorithm>

namespace ravlo
{

namespace
{

// Initialises COM for this thread, as a host's user interface thread has it.
class Apartment
{
public:
    Apartment() { ThrowIfFailed(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)); }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    ~Apartment() { CoUninitialize(); }
};

// A command that works on the console alone.
int RunOnConsole(const CommandLine& line, const Console& cOut, const Console& cError)
{
    const Boxes boxes(cError); // nobody is there to click
    if (const auto* import = std::get_if<ImportOptions>(&line))
        RunImport(*import, cOut, cError);
    else if (const auto* plays = std::get_if<PlaysOptions>(&line))
        RunPlays(*plays, cOut);
    else if (const auto* day = std::get_if<DayOptions>(&line))
        RunDay(*day, cOut, cError);
    else if (const auto* watch = std::get_if<WatchOptions>(&line))
        RunWatch(*watch, boxes, cOut, cError);
    else if (const auto* rotation = std::get_if<RotationCommand>(&line))
        RunRotation(*rotation, boxes, cOut, cError);
    else if (const auto* forecast = std::get_if<ForecastOptions>(&line))
        return RunForecast(*forecast, cOut, cError);
    else if (const auto* cats = std::get_if<CatsOptions>(&line))
        return RunCats(*cats, boxes, cOut, cError);
    return lExitOk;
}

int Run(const CommandLine& line, const Console& cOut, const Console& cError)
{
    const Apartment apartment;
    if (const auto* category = std::get_if<CategoryOptions>(&line))
    {
        RunCategory(*category, cOut, cError);
        return lExitOk;
    }
    if (const auto* library = std::get_if<LibraryOptions>(&line))
    {
        RunLibrary(*library, cError);
        return lExitOk;
    }
    if (const auto* forecast = std::get_if<ForecastOptions>(&line); forecast && forecast->bWindow)
    {
        RunHealthWindow(*forecast, cError);
        return lExitOk;
    }
    return RunOnConsole(line, cOut, cError);
}

int Main(const std::vector<std::string>& arguments)
{
    const Console cOut(STD_OUTPUT_HANDLE);
    const Console cError(STD_ERROR_HANDLE);
    try
    {
        const CommandLine line = ParseCommandLine(arguments);
        if (const auto* reply = std::get_if<Reply>(&line))
        {
            (reply->lStatus == lExitOk ? cOut : cError).Write(reply->sText);
            return reply->lStatus;
        }
        return Run(line, cOut, cError);
    }
    catch (...)
    {
        std::wstring sWhat = CurrentErrorText();
        std::replace_if(
            sWhat.begin(), sWhat.end(), [](wchar_t c) { return c == L'\r' || c == L'\n'; }, L' ');
        cError.Write(L"RavloHost: " + sWhat + L"\n");
        return lExitFailed;
    }
}

} // namespace

} // namespace ravlo

int wmain(int lCount, wchar_t** arguments)
{
    std::vector<std::string> bytes;
    for (int l = 1; l < lCount; ++l)
        bytes.push_back(ravlo::Utf8Of(arguments[l]));
    return ravlo::Main(bytes);
}
