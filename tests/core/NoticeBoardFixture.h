// A board wired as the package wires it, for protocol tests: a configuration whose log goes to a fresh
// temporary folder, one TNoticeBoard installed for the notice callback, and helpers to send messages.
#pragma once

#include "adapters/ZNB_Cfg.h"
#include "core/TNoticeBoard.h"
#include "core/Znb_callback.h"
#include "core/Znb_data.h"

#include "adapters/TempFolder.h"

#include <gtest/gtest.h>

#include <string>

class NoticeBoardTest : public ::testing::Test {
protected:
    void SetUp() override {
        NBConfig = std::make_unique<TNBConfig>(Folder.Path());
        NBConfig->LogFileName = Folder / "znb.log";
        Board = std::make_unique<TNoticeBoard>();
        SetNoticeBoard(Board.get());
    }
    void TearDown() override {
        SetNoticeBoard(nullptr);
        SetNoticeWake({});
        Board.reset();
        NBConfig.reset();
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
    std::string LogText() const { return ReadTextFile(Folder / "znb.log"); }
    TNoticeStore& Store() { return Board->cdsNoticeBd(); }
    // The row with that originator key (any case), or null; leaves the store's current row on it.
    const TNoticeRecord* Row(const std::string& key) {
        Store().SetIndexName("Orig_Key_Index");
        const bool found = Store().FindKey(key);
        Store().SetIndexName("primaryIdx");
        return found ? &Store().ActiveRecord() : nullptr;
    }

    TTempFolder Folder;
    std::unique_ptr<TNoticeBoard> Board;
};
