#include <desktop/window/TaskbarProgress.h>

namespace desktop {

namespace {

class NoProgress : public TaskbarProgress
{
    void paint(int) override {}
};

} // namespace

std::unique_ptr<TaskbarProgress> TaskbarProgress::ofSystem(QWidget *)
{
    return std::make_unique<NoProgress>();
}

} // namespace desktop
