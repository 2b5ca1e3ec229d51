#pragma once

#include <memory>

class QWidget;

namespace desktop {

//! \brief Shows the progress of the transfers in the icon of the task bar.
class TaskbarProgress
{
public:
    TaskbarProgress() = default;
    virtual ~TaskbarProgress() = default;
    TaskbarProgress(const TaskbarProgress &) = delete;
    TaskbarProgress &operator=(const TaskbarProgress &) = delete;

    //! Creates the implementation for this system; it has no effect if the task bar cannot show progress.
    //! \param window must outlive it
    static std::unique_ptr<TaskbarProgress> ofSystem(QWidget *window);

    //! \param percent 0 to 100; -1 for none
    void show(int percent)
    {
        if (percent == m_shown)
            return;
        m_shown = percent;
        paint(percent);
    }

private:
    virtual void paint(int percent) = 0;

    int m_shown = -1;
};

} // namespace desktop
