// SPDX-License-Identifier: MIT
#include "platform/memory/ScriptedMessages.h"

#include <ostream>
#include <utility>

namespace ravlo
{

namespace
{

std::string Quoted(const std::wstring& sText)
{
    std::string sQuoted = "\"";
    for (const wchar_t c : sText)
    {
        if (c == L'\r' || c == L'\n' || c == L'\t')
            sQuoted += c == L'\r' ? "\\r" : c == L'\n' ? "\\n" : "\\t";
        else
            sQuoted += c >= L' ' && c <= L'~' ? static_cast<char>(c) : '?';
    }
    return sQuoted + '"';
}

const char* NameOf(BoxIcon eIcon)
{
    switch (eIcon)
    {
    case BoxIcon::Critical:
        return "critical";
    case BoxIcon::Question:
        return "question";
    case BoxIcon::Exclamation:
        return "exclamation";
    case BoxIcon::Information:
        return "information";
    case BoxIcon::None:
        break;
    }
    return "no icon";
}

const char* NameOf(BoxButtons eButtons)
{
    return eButtons == BoxButtons::Ok      ? ", OK, "
           : eButtons == BoxButtons::YesNo ? ", Yes/No, "
                                           : ", Yes/[No], ";
}

template <class Answer> Answer NextOf(std::deque<Answer>& answers, const Answer& eDefault)
{
    if (answers.empty())
        return eDefault;
    Answer eAnswer = std::move(answers.front());
    answers.pop_front();
    return eAnswer;
}

} // namespace

void PrintTo(const ShownBox& box, std::ostream* pStream)
{
    *pStream << NameOf(box.eIcon) << NameOf(box.eButtons) << Quoted(box.sTitle) << ", " << Quoted(box.sText);
}

void PrintTo(const ShownInput& input, std::ostream* pStream)
{
    *pStream << Quoted(input.sTitle) << ", " << Quoted(input.sPrompt);
}

BoxAnswer ScriptedMessages::Box(BoxIcon eIcon, BoxButtons eButtons, const std::wstring& sTitle,
                                const std::wstring& sText)
{
    Boxes.push_back({eIcon, eButtons, sTitle, sText});
    const BoxAnswer eAnswer = eButtons == BoxButtons::Ok ? eOkAnswer : NextOf(Answers, eDefaultAnswer);
    if (const std::function<void()> hook = OnShown)
        hook();
    return eAnswer;
}

std::optional<std::wstring> ScriptedMessages::Input(const std::wstring& sTitle, const std::wstring& sPrompt,
                                                    const std::wstring& sText)
{
    Inputs.push_back({sTitle, sPrompt, sText});
    const std::optional<std::wstring> sAnswer = NextOf(Typed, sDefaultTyped);
    if (const std::function<void()> hook = OnShown)
        hook();
    return sAnswer;
}

} // namespace ravlo
