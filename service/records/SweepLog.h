#pragma once

#include <service/records/Sweep.h>

#include <QtGlobal>

namespace service {

class DataFolder;

//! \brief What all sweeps of a data folder have done, for the metrics: sweeps run in processes of their own.
struct SweepLog
{
    qint64 sweeps = 0;
    SweepResult total;
    qint64 lastMs = 0; //!< the end of the last one; 0 if there was none

    //! Returns zeros if there was no sweep, or the file cannot be read.
    static SweepLog read(const DataFolder &folder);

    //! Adds a sweep. A failure is ignored: what was swept is gone in any case.
    static void add(const DataFolder &folder, const SweepResult &result, qint64 nowMs);
};

} // namespace service
