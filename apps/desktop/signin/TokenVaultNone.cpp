#include <desktop/signin/TokenVault.h>

namespace desktop {

std::unique_ptr<TokenVault> TokenVault::ofSystem()
{
    return nullptr;
}

} // namespace desktop
