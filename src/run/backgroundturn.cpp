#include "run/backgroundturn.h"

#include <glog/logging.h>

namespace {

const char *currentWork = nullptr; // null: the turn is free

} // namespace

BackgroundTurn::BackgroundTurn(const char *work, const char *request) : m_isMine(isFreeFor(request))
{
    if (m_isMine)
        currentWork = work;
}

BackgroundTurn::~BackgroundTurn()
{
    if (m_isMine)
        currentWork = nullptr;
}

bool BackgroundTurn::isFreeFor(const char *request)
{
    if (!currentWork)
        return true;
    LOG(ERROR) << currentWork << "; " << request << " was ignored";
    return false;
}
