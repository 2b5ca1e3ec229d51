#pragma once

#include <QCoreApplication>

namespace velldoc {

//! The translation context of the program: Text::tr("…").
struct Text
{
    Q_DECLARE_TR_FUNCTIONS(velldoc)
};

} // namespace velldoc
