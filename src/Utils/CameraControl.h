#pragma once

#include <memory>

/** Takes the camera back from whatever else drives it, through the board. Copying moves it. */
class CameraControl
{
public:
    CameraControl();
    CameraControl(CameraControl& other);
    CameraControl& operator=(CameraControl& other);
    virtual ~CameraControl();

    /** False when the board has no such control (Linux boards have none). */
    bool retrieveControl();

private:
    std::unique_ptr<unsigned char> m_pFlag;
};
