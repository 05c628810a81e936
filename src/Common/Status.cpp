#include "Common/Status.h"

namespace {
uint16_t gLastStatus = TVXSTATUS_SUCCESS;
}

uint16_t GetLastStatus()
{
    return gLastStatus;
}

void SetLastStatus(uint16_t status)
{
    gLastStatus = status;
}
