#include <desktop/window/TaskbarProgress.h>

#include <QWidget>

#include <shobjidl.h>

namespace desktop {

namespace {

constexpr ULONGLONG WholePercent = 100;

class TaskbarButton : public TaskbarProgress
{
public:
    explicit TaskbarButton(QWidget *window) : m_window(window)
    {
        // Qt has initialized COM on this thread.
        void *list = nullptr;
        const HRESULT result = CoCreateInstance(CLSID_TaskbarList, nullptr, CLSCTX_INPROC_SERVER,
                                                IID_ITaskbarList3, &list);
        if (FAILED(result))
            return;
        m_list = static_cast<ITaskbarList3 *>(list);
        m_list->HrInit();
    }
    ~TaskbarButton() override
    {
        if (m_list)
            m_list->Release();
    }

private:
    void paint(int percent) override
    {
        if (!m_list)
            return;
        auto *const handle = reinterpret_cast<HWND>(m_window->winId());
        m_list->SetProgressState(handle, percent < 0 ? TBPF_NOPROGRESS : TBPF_NORMAL);
        if (percent >= 0)
            m_list->SetProgressValue(handle, ULONGLONG(percent), WholePercent);
    }

    QWidget *const m_window;
    ITaskbarList3 *m_list = nullptr;
};

} // namespace

std::unique_ptr<TaskbarProgress> TaskbarProgress::ofSystem(QWidget *window)
{
    return std::make_unique<TaskbarButton>(window);
}

} // namespace desktop
