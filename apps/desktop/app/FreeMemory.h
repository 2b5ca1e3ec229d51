#pragma once

#include <QObject>
#include <QTimer>

class VellTransferQueue;

namespace desktop {

//! \brief Returns free memory to the system when all transfers have ended.
//!
//! The C library keeps what was freed for the next request: after a day with many transfers that is several times what the
//! program uses. Where the system does this itself, it does nothing.
class FreeMemory : public QObject
{
    Q_OBJECT

public:
    //! \param queue must outlive this object
    explicit FreeMemory(const VellTransferQueue *queue, QObject *parent = nullptr);

    //! Lets threads share their free memory. To be called before there are threads.
    static void share();

private:
    QTimer m_timer;
};

} // namespace desktop
