// The names of training files, 16 hexadecimal digits, and of copies that become one.
#pragma once

#include "services/text/latin1.h"
#include "services/text/paths.h"

namespace device {

// Digits of either case: the device may write upper case. Such a name can be no path and needs no
// conversion to become one.
bool isTrainingName(services::TextView name);

// The name under which a training file is written until its copy is complete: no training's.
services::Path unfinishedName(services::PathView trainingName);

// True for a name that unfinishedName makes: what an interrupted copy left behind.
bool isUnfinishedName(services::PathView name);

// The training's name that an unfinished one was made of.
services::PathView finishedName(services::PathView unfinishedName);

}  // namespace device
