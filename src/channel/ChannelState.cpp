// The program-wide state of the route to the BMC.
#include "CommandChannel.h"

eInterface eInterfaceInUse = eIntfOpenIPMI;
sIolDataTag sIolData = {};
TTalkToBMC* G_pTalkBMC = nullptr;
