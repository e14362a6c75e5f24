// SPDX-License-Identifier: MIT
#include "ui/windows/SchedulerUi.h"

#include "base/ScopedFlag.h"
#include "ui/category/windows/frmCatWindow.h"
#include "ui/health/windows/HealthWindowLifetime.h"
#include "ui/library/windows/LibraryWindowLifetime.h"
#include "ui/rotation/windows/RotationWindows.h"

namespace ravlo
{

namespace
{

class Ui final : public SchedulerUi
{
public:
    explicit Ui(const std::shared_ptr<clsSchedMan>& cSchedMan)
        : m_cSchedMan(cSchedMan), m_cLibrary(
                                      cSchedMan, [this] { return m_bCategoryShowing; }, Dialogs())
    {
    }

    bool LibraryExists() const override { return m_cLibrary.Exists(); }
    bool LibraryShowing() const override { return m_cLibrary.Showing(); }
    void ReloadLibrary() override
    {
        m_cHealth.NoteChange();
        m_cLibrary.Reload();
    }
    void RefreshLibrary() override
    {
        m_cHealth.NoteChange();
        m_cLibrary.Refresh();
    }
    void ShowLibrary() override { m_cLibrary.Show(); }

    std::int32_t ShowCategory(CategoryRequest& request) override
    {
        const std::shared_ptr<clsSchedMan> cSchedMan = m_cSchedMan.lock();
        if (!cSchedMan || m_bCategoryShowing)
            return lNotChosen;
        const ScopedFlag cShowing(m_bCategoryShowing);
        return ShowCategoryWindow(cSchedMan, request);
    }

    void ShowHealth(const Plan& plan) override
    {
        const bool bPlanned = !plan.Slots().empty();
        const std::optional<HealthTarget> target =
            m_cHealth.Show(bPlanned ? std::optional(plan) : std::nullopt);
        if (target)
            m_cLibrary.GoTo(target->sLevelKey, TextKey(target->sCutKey));
    }

private:
    LibraryDialogs Dialogs()
    {
        LibraryDialogs dialogs;
        dialogs.ShowExplanation =
            [](clsSchedMan& cSchedMan, const std::wstring& sLevelKey, const TextKey& cKey) {
            ShowExplanationWindow(cSchedMan.shared_from_this(), sLevelKey, cKey);
        };
        dialogs.ShowNextCuts = [](clsSchedMan& cSchedMan, const std::wstring& sLevelKey) {
            ShowNextCutsWindow(cSchedMan.shared_from_this(), sLevelKey);
        };
        dialogs.ShowHealth = [this](clsSchedMan&) { ShowHealth({}); };
        return dialogs;
    }

    std::weak_ptr<clsSchedMan> m_cSchedMan;
    LibraryWindowLifetime m_cLibrary;
    HealthWindowLifetime m_cHealth{m_cSchedMan};
    bool m_bCategoryShowing = false;
};

} // namespace

std::unique_ptr<SchedulerUi> NewSchedulerUi(const std::shared_ptr<clsSchedMan>& cSchedMan)
{
    return std::make_unique<Ui>(cSchedMan);
}

} // namespace ravlo
