#pragma once

#include "VelldocWorld.h"

#include <QProcess>

//! \brief A velldoc that works while the test goes on, and is killed with the object.
class RunningVelldoc : public QProcess
{
public:
    RunningVelldoc(const VelldocWorld &world, const char *line)
    {
        setProcessEnvironment(world.environment);
        setWorkingDirectory(world.path(QString()));
        start(VelldocWorld::program(),
              QStringList{QStringLiteral("--url"), world.baseApi()} + VelldocWorld::words(line));
        waitForStarted();
    }
    ~RunningVelldoc() override
    {
        kill();
        waitForFinished();
    }
};
