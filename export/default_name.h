// The file name that the requester of the training export offers.
#pragma once

#include "device/dictionary_record.h"
#include "services/text/latin1.h"

namespace exporting {

// "0026  07_05_2013 18_04_09   31min   15,2km  Berg.csv": the last four characters of the training
// number, the start, the riding time, the distance and the description. A "/" or a control
// character of the description, which no file name should hold, becomes "_".
services::Text defaultTrainingName(const device::DictionaryRecord& training);

}  // namespace exporting
