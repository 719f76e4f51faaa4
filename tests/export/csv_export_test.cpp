#include "export/csv_export.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "device/device_state.h"
#include "export/export_state.h"
#include "services/disk/numbered_files.h"
#include "services/text/latin1.h"
#include "services/text/text.h"
#include "tests/export/export_fixture.h"
#include "tests/stand_ins/stand_ins.h"

namespace {

using export_tests::indexHeader;
using export_tests::plainRecord;
using export_tests::plainRecordLine;
using export_tests::plainSample;
using export_tests::plainSampleLine;
using export_tests::trainingHeader;
using exporting::exportIndex;
using exporting::exportTraining;
using services::operator""_l1;

const std::string indexName = "Dicitonary.csv";
const std::string trainingName = "0026  07_05_2013 18_04_09   62min   15,2km  Berg.csv";

class CsvExport : public stand_ins::StandInTest {
  protected:
    void SetUp() override {
        StandInTest::SetUp();
        device::state = {};
        exporting::state = {};
        home = directory.string() + "/";
    }

    static void fillTables() {
        device::state.dictionary = {plainRecord(), plainRecord()};
        device::state.samples = {plainSample(), plainSample()};
    }

    static void answer(const std::string& start, const std::string& name,
                       const std::string& chosen) {
        stand_ins::world.saveFileAnswers.push_back(
            {services::Text("Name und Ort der CSV-Datei wählen"_l1), start, name, chosen});
    }

    static void expectSaved(services::TextView shown) {
        stand_ins::expectMessage(
            "Info", services::concatenate("Die Datei '", shown, "' wurde gespeichert!"));
    }

    static void expectNotOpened(services::TextView shown) {
        stand_ins::expectMessage(
            "Dateifehler",
            services::concatenate("Die Datei '", shown, "' konnte nicht geöffnet!"_l1));
    }

    static std::string bytesOf(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        EXPECT_TRUE(file.good()) << path;
        return {std::istreambuf_iterator<char>(file), {}};
    }

    static void writeBytes(const std::string& path, const std::string& bytes) {
        std::ofstream(path, std::ios::binary) << bytes;
    }

    std::size_t filesInHome() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(directory), {}));
    }

    std::string home;
};

TEST_F(CsvExport, TheIndexIsWrittenAndReported) {
    fillTables();
    answer("", indexName, home + "Liste.csv");
    expectSaved(home + "Liste.csv");
    exportIndex();
    EXPECT_EQ(bytesOf("Liste.csv"), indexHeader + plainRecordLine + plainRecordLine);
    EXPECT_EQ(exporting::state.indexDirectory, home);
    EXPECT_EQ(exporting::state.trainingDirectory, "");
}

TEST_F(CsvExport, TheTrainingIsWrittenAndReported) {
    fillTables();
    answer("", trainingName, home + "Training.csv");
    expectSaved(home + "Training.csv");
    exportTraining();
    EXPECT_EQ(bytesOf("Training.csv"), trainingHeader + plainSampleLine + plainSampleLine);
    EXPECT_EQ(exporting::state.trainingDirectory, home);
    EXPECT_EQ(exporting::state.indexDirectory, "");
}

TEST_F(CsvExport, NoFileIsLeftOpen) {
    const auto openFiles = [] {
        const std::filesystem::directory_iterator all("/proc/self/fd");
        return std::distance(begin(all), end(all));
    };
    for (int number = 0; number < services::fileNumberLimit; ++number)
        services::closeFile(number);
    fillTables();
    const auto before = openFiles();
    answer("", indexName, home + "index.csv");
    expectSaved(home + "index.csv");
    exportIndex();
    EXPECT_EQ(openFiles(), before);
}

TEST_F(CsvExport, TheTablesStayAsTheyWere) {
    fillTables();
    const auto dictionary = device::state.dictionary;
    const auto samples = device::state.samples;
    answer("", indexName, home + "a.csv");
    expectSaved(home + "a.csv");
    exportIndex();
    answer("", trainingName, home + "b.csv");
    expectSaved(home + "b.csv");
    exportTraining();
    EXPECT_EQ(device::state.dictionary, dictionary);
    EXPECT_EQ(device::state.samples, samples);
}

TEST_F(CsvExport, ATableOfOneRecordDoesNothing) {
    device::state.dictionary = {plainRecord()};
    exportIndex();
    device::state.dictionary = {{}};  // as after an unreadable index
    exportIndex();
    EXPECT_EQ(filesInHome(), 0U);
}

TEST_F(CsvExport, AnEmptyTableGivesAFileOfTheHeaderAlone) {
    answer("", indexName, home + "leer.csv");
    expectSaved(home + "leer.csv");
    exportIndex();
    EXPECT_EQ(bytesOf("leer.csv"), indexHeader);
}

TEST_F(CsvExport, NoSelectedRecordGivesAFileOfTheHeaderAlone) {
    fillTables();
    for (auto& record : device::state.dictionary)
        record.selected = 0;
    answer("", indexName, home + "leer.csv");
    expectSaved(home + "leer.csv");
    exportIndex();
    EXPECT_EQ(bytesOf("leer.csv"), indexHeader);
}

TEST_F(CsvExport, ATrainingOfOneSampleOrNoneDoesNothing) {
    fillTables();
    device::state.samples.resize(1);
    exportTraining();
    device::state.samples.clear();
    exportTraining();
    EXPECT_EQ(filesInHome(), 0U);
}

TEST_F(CsvExport, TheTrainingIsNamedAfterTheFirstSelectedRecord) {
    fillTables();
    device::state.dictionary.insert(device::state.dictionary.begin(),
                                    {.fileName = "0000000000000001", .description = "davor"});
    device::state.dictionary.back().description = "danach";
    answer("", trainingName, "");
    exportTraining();
}

TEST_F(CsvExport, WithoutASelectedRecordNoNameIsOffered) {
    fillTables();
    for (auto& record : device::state.dictionary)
        record.selected = 0;
    answer("", "", "");
    exportTraining();
}

TEST_F(CsvExport, EachExportRemembersItsOwnDirectory) {
    fillTables();
    std::filesystem::create_directory("a");
    std::filesystem::create_directory("b");
    answer("", indexName, home + "a/1.csv");
    expectSaved(home + "a/1.csv");
    exportIndex();
    answer("", trainingName, home + "b/2.csv");
    expectSaved(home + "b/2.csv");
    exportTraining();
    answer(home + "a/", indexName, home + "3.csv");
    expectSaved(home + "3.csv");
    exportIndex();
    answer(home + "b/", trainingName, home + "4.csv");
    expectSaved(home + "4.csv");
    exportTraining();
    EXPECT_EQ(exporting::state.indexDirectory, home);
    EXPECT_EQ(exporting::state.trainingDirectory, home);
}

TEST_F(CsvExport, ACancelledRequesterIsSilentAndForgetsTheDirectory) {
    fillTables();
    exporting::state = {.indexDirectory = home, .trainingDirectory = home};
    answer(home, indexName, "");
    exportIndex();
    EXPECT_EQ(exporting::state.indexDirectory, "");
    EXPECT_EQ(exporting::state.trainingDirectory, home);
    answer(home, trainingName, "");
    exportTraining();
    EXPECT_EQ(exporting::state.trainingDirectory, "");
    EXPECT_EQ(filesInHome(), 0U);
}

TEST_F(CsvExport, AnAnswerWithoutANameIsSilentAndKeepsTheDirectory) {
    fillTables();
    answer("", indexName, home);
    exportIndex();
    EXPECT_EQ(exporting::state.indexDirectory, home);
    EXPECT_EQ(filesInHome(), 0U);
}

TEST_F(CsvExport, ABareNameIsWrittenToTheWorkingDirectory) {
    fillTables();
    exporting::state.indexDirectory = home;
    answer(home, indexName, "bloss.csv");
    expectSaved("bloss.csv");
    exportIndex();
    EXPECT_EQ(exporting::state.indexDirectory, "");
    EXPECT_EQ(bytesOf("bloss.csv"), indexHeader + plainRecordLine + plainRecordLine);
}

TEST_F(CsvExport, NoEndingIsAddedToATypedName) {
    fillTables();
    answer("", indexName, home + "Liste");
    expectSaved(home + "Liste");
    exportIndex();
    EXPECT_TRUE(std::filesystem::exists("Liste"));
    EXPECT_EQ(filesInHome(), 1U);
}

TEST_F(CsvExport, ALongerOldFileKeepsItsTail) {
    fillTables();
    const std::string index = indexHeader + plainRecordLine + plainRecordLine;
    writeBytes("lang.csv", std::string(index.size(), '#') + "der alte Rest\r\n");
    answer("", indexName, home + "lang.csv");
    expectSaved(home + "lang.csv");
    exportIndex();
    EXPECT_EQ(bytesOf("lang.csv"), index + "der alte Rest\r\n");

    answer("", trainingName, home + "lang.csv");
    expectSaved(home + "lang.csv");
    exportTraining();
    const std::string training = trainingHeader + plainSampleLine + plainSampleLine;
    ASSERT_LT(training.size(), index.size());
    EXPECT_EQ(bytesOf("lang.csv"), training + index.substr(training.size()) + "der alte Rest\r\n");
}

TEST_F(CsvExport, AShorterOldFileIsGoneWhole) {
    fillTables();
    writeBytes("kurz.csv", "kurz");
    answer("", trainingName, home + "kurz.csv");
    expectSaved(home + "kurz.csv");
    exportTraining();
    EXPECT_EQ(bytesOf("kurz.csv"), trainingHeader + plainSampleLine + plainSampleLine);
}

TEST_F(CsvExport, WhatCannotBeOpenedIsReportedAndTheDirectoryKept) {
    fillTables();
    std::filesystem::create_directory("ordner.csv");
    answer("", indexName, home + "ordner.csv");
    expectNotOpened(home + "ordner.csv");
    exportIndex();
    EXPECT_EQ(exporting::state.indexDirectory, home);

    answer("", trainingName, home + "nirgends/a.csv");
    expectNotOpened(home + "nirgends/a.csv");
    exportTraining();
    EXPECT_EQ(exporting::state.trainingDirectory, home + "nirgends/");
    EXPECT_FALSE(std::filesystem::exists("nirgends"));
}

TEST_F(CsvExport, ADirectoryOfAnyNameIsUsedAsItIs) {
    fillTables();
    const std::string folder = home + "Łódź \xFF/";  // its last byte is not even UTF-8
    std::filesystem::create_directory(folder);
    answer("", indexName, folder + "Übersicht €.csv");
    expectSaved(services::concatenate(home, "?ód? ?/Übersicht ?.csv"_l1));
    exportIndex();
    EXPECT_EQ(bytesOf(folder + "Übersicht €.csv"), indexHeader + plainRecordLine + plainRecordLine);
    EXPECT_EQ(exporting::state.indexDirectory, folder);

    std::filesystem::create_directory(folder + "Ordner");
    answer(folder, indexName, folder + "Ordner");
    expectNotOpened(services::concatenate(home, "?ód? ?/Ordner"_l1));
    exportIndex();
}

TEST_F(CsvExport, AFullDiskIsNotNoticed) {
    fillTables();
    rlimit old = {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &old), 0);
    const rlimit none = {.rlim_cur = 0, .rlim_max = old.rlim_max};
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &none), 0);
    answer("", indexName, home + "voll.csv");
    expectSaved(home + "voll.csv");
    exportIndex();
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &old), 0);
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_EQ(bytesOf("voll.csv"), "");
}

TEST_F(CsvExport, TheFileIsClosedBeforeItIsToldSaved) {
    fillTables();
    int told = 0;
    stand_ins::world.beforeMessage = [&](services::TextView) {
        ++told;
        for (int number = 0; number < services::fileNumberLimit; ++number)
            EXPECT_EQ(-1, services::lengthOfFile(number)) << number;
    };
    answer("", indexName, home + "Liste.csv");
    expectSaved(home + "Liste.csv");
    exportIndex();
    answer("", trainingName, home + "Training.csv");
    expectSaved(home + "Training.csv");
    exportTraining();
    EXPECT_EQ(told, 2);
}

}  // namespace
