#pragma once

#include "Platform/Board.h"

namespace LmComTesting
{

/** A board whose answers a test sets; records the controls asked of it. */
class FakeBoard : public Platform::Board
{
public:
    juce::String os, boot;
    std::optional<juce::String> sdCard;
    std::optional<std::array<unsigned char, 16>> id;
    bool controls = true;
    int cameraRetrievals = 0;
    std::vector<std::pair<juce::String, int>> displayFormats;

    juce::String osVersion() override { return os; }
    juce::String bootVersion() override { return boot; }
    std::optional<juce::String> sdCardId() override { return sdCard; }
    std::optional<std::array<unsigned char, 16>> uuid() override { return id; }
    bool retrieveCameraControl() override
    {
        ++cameraRetrievals;
        return controls;
    }
    bool setDisplayFormat(const juce::String& window, int formatCode) override
    {
        displayFormats.emplace_back(window, formatCode);
        return controls;
    }

    /** Installs a new fake board as the current one; it stays until the process ends. */
    static std::shared_ptr<FakeBoard> install()
    {
        auto board = std::make_shared<FakeBoard>();
        Platform::Board::install(board);
        return board;
    }
};

} // namespace LmComTesting
