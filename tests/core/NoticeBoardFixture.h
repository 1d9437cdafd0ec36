// A board wired as the package wires it, for protocol tests: a configuration whose log goes to a fresh
// temporary folder, one TNoticeBoard installed for the notice callback, and helpers to send messages.
#pragma once

#include "adapters/ZNB_Cfg.h"
#include "core/TNoticeBoard.h"
#include "core/Znb_callback.h"
#include "core/Znb_data.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

class NoticeBoardTest : public ::testing::Test {
protected:
    void SetUp() override {
        Folder = std::filesystem::temp_directory_path() /
                 ("nb_protocol_" + std::to_string(::getpid()) + "_" + std::to_string(++Counter));
        std::filesystem::create_directories(Folder);
        NBConfig = std::make_unique<TNBConfig>(Folder.string() + "/");
        NBConfig->LogFileName = (Folder / "znb.log").string();
        Board = std::make_unique<TNoticeBoard>();
        SetNoticeBoard(Board.get());
    }
    void TearDown() override {
        SetNoticeBoard(nullptr);
        SetNoticeWake({});
        Board.reset();
        NBConfig.reset();
        std::error_code ec;
        std::filesystem::remove_all(Folder, ec);
    }

    int32_t Send(const std::string& xml) {
        const char* text = xml.c_str();
        return NoticeCallback(0, &text, 0);
    }
    static std::string Message(const std::string& notices) {
        return "<Msg><NoticeList>" + notices + "</NoticeList></Msg>";
    }
    // One notice: a command and "<name>value</name>" elements.
    static std::string Notice(const std::string& command, const std::string& elements) {
        return "<Notice><Command>" + command + "</Command>" + elements + "</Notice>";
    }
    static std::string El(const std::string& name, const std::string& value) {
        return "<" + name + ">" + value + "</" + name + ">";
    }
    std::string LogText() const {
        std::ifstream in(Folder / "znb.log");
        std::stringstream s;
        s << in.rdbuf();
        return s.str();
    }
    TNoticeStore& Store() { return Board->cdsNoticeBd(); }
    // The row with that originator key (any case), or null; leaves the store's current row on it.
    const TNoticeRecord* Row(const std::string& key) {
        Store().SetIndexName("Orig_Key_Index");
        const bool found = Store().FindKey(key);
        Store().SetIndexName("primaryIdx");
        return found ? &Store().ActiveRecord() : nullptr;
    }

    std::filesystem::path Folder;
    std::unique_ptr<TNoticeBoard> Board;
    static inline int Counter = 0;
};
