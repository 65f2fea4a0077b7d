#include <sourcecontrol.h>

IRevisionControlPropertiesMgr_Slot::IRevisionControlPropertiesMgr_Slot() = default;
IRevisionControlPropertiesMgr_Slot::~IRevisionControlPropertiesMgr_Slot() = default;
