// What the export's tests share: the headers as users know them, and a record and a sample whose
// every field differs.
#pragma once

#include <string>

#include "device/dictionary_record.h"
#include "device/training_sample.h"

namespace export_tests {

inline const std::string indexHeader =
    "Trainingsart;Beschreibung;Startdatum;Enddatum;Watt;Unbekannt1;Puls;RPM;km/h;KJoule/Min.;"
    "Fahrzeit;Strecke;Max km/h;Unbekannt2;Max. RPM;Unbekannt3;Max. KJoule/Min.;KJoule;Unbekannt4;"
    "Unbekannt5;Unbekannt6\r\n";

inline const std::string trainingHeader =
    "Elapsed Time (s);Distance (km);Phys. kJoule;Slope (%);NM;RPM;Speed (km/h);Watt;Gear;"
    "Device Active;Pulse;Pulse Type;Training Type;Training Value;Pulse Time 1;2;3;4;5;6\r\n";

inline device::DictionaryRecord plainRecord() {
    return {.fileName = "000000000000001a",
            .trainingType = 3,
            .description = "Berg",
            .startDate = 1367949849,  // 07.05.2013 18:04:09
            .endDate = 1367953574,    // an hour, two minutes and five seconds later
            .watt = 150.25F,
            .unknown1 = 11.75F,
            .pulse = 131.5F,
            .rpm = 845.0F,
            .speed = 253.75F,
            .kJoulePerMinute = 9.125F,
            .rideTime = 3725,
            .distance = 15234.0F,
            .maxSpeed = 41.5F,
            .unknown2 = 22,
            .maxRpm = 104.75F,
            .unknown3 = 33.25F,
            .maxKJoulePerMinute = 17.5F,
            .kJoule = 560.75F,
            .unknown4 = 44.5F,
            .unknown5 = 55,
            .unknown6 = 66,
            .selected = 1};
}

// Half way between two whole numbers: 84.5, 131.5, 17.5 and 44.5 go to the even one; 25.375 and
// 9.125 likewise in their second decimal.
inline const std::string plainRecordLine =
    "3;Berg;07.05.2013 18:04:09;07.05.2013 19:06:14;150;12;132;84;25,38;9,12;1:02:05;152.34;41,50;"
    "22;105;33;18;561;44;55;66\r\n";

inline device::TrainingSample plainSample() {
    return {.elapsedTime = 61,
            .distance = 1234.5F,
            .kJoule = 10.5F,
            .slope = -25,
            .torque = 185,
            .rpm = 847,
            .speed = 253,
            .watt = 155,
            .gear = 7,
            .deviceActive = 1,
            .pulse = 131,
            .pulseTime1 = 201,
            .pulseTime2 = 202,
            .pulseTime3 = 203,
            .pulseTime4 = 204,
            .pulseTime5 = 205,
            .pulseTime6 = 206,
            .trainingType = 4,
            .pulseType = 2,
            .trainingValue = 99.75F};
}

// The single nearest to the distance of 1.2345 lies a little above it.
inline const std::string plainSampleLine =
    "61;1,235;10;-2;18;85;25,3;155;7;1;131;2;4;99,8;201;202;203;204;205;206\r\n";

}  // namespace export_tests
