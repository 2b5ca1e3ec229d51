#include <desktop/signin/TokenVault.h>

#include <qt5keychain/keychain.h>

namespace desktop {

namespace {

class Keychain : public QObject, public TokenVault
{
public:
    void write(const QString &id, const QString &token,
               const std::function<void(bool isKept)> &onEnd) override
    {
        auto *const job = new QKeychain::WritePasswordJob(service(), this);
        job->setKey(id);
        job->setTextData(token);
        connect(job, &QKeychain::Job::finished, this,
                [job, onEnd] { onEnd(job->error() == QKeychain::NoError); });
        job->start();
    }

    void read(const QString &id, const std::function<void(const QString &token)> &onEnd) override
    {
        auto *const job = new QKeychain::ReadPasswordJob(service(), this);
        job->setKey(id);
        connect(job, &QKeychain::Job::finished, this, [job, onEnd] { onEnd(job->textData()); });
        job->start();
    }

    void remove(const QString &id) override
    {
        auto *const job = new QKeychain::DeletePasswordJob(service(), this);
        job->setKey(id);
        job->start();
    }

private:
    static QString service() { return QStringLiteral("vell-desktop"); }
};

} // namespace

std::unique_ptr<TokenVault> TokenVault::ofSystem()
{
    return std::make_unique<Keychain>();
}

} // namespace desktop
