// SPDX-License-Identifier: MIT
#include "ui/windows/SchedulerUi.h"

#include "ui/category/windows/ShowCategory.h"
#include "ui/controls/Raised.h"

namespace ravlo
{

namespace
{

class SchedulerUi final : public SchedulerWindows
{
public:
    explicit SchedulerUi(const std::shared_ptr<clsSchedMan>& cSchedMan) : m_cSchedMan(cSchedMan) {}

    bool LibraryExists() const override { return false; }
    bool LibraryShowing() const override { return false; }
    void ReloadLibrary() override {}
    void RefreshLibrary() override {}
    void ShowLibrary() override {}

    std::int32_t ShowCategory(CategoryRequest& request) override
    {
        const std::shared_ptr<clsSchedMan> cSchedMan = m_cSchedMan.lock();
        if (!cSchedMan || m_bCategoryShowing)
            return lNotChosen;
        const Raised cShowing(m_bCategoryShowing);
        return ShowCategoryWindow(cSchedMan, request);
    }

private:
    std::weak_ptr<clsSchedMan> m_cSchedMan;
    bool m_bCategoryShowing = false;
};

} // namespace

std::unique_ptr<SchedulerWindows> NewSchedulerUi(const std::shared_ptr<clsSchedMan>& cSchedMan)
{
    return std::make_unique<SchedulerUi>(cSchedMan);
}

} // namespace ravlo
