#include "Utils/CameraControl.h"

#include "Platform/Board.h"

CameraControl::CameraControl() : m_pFlag(std::make_unique<unsigned char>(0)) {}
CameraControl::CameraControl(CameraControl& other) : m_pFlag(std::move(other.m_pFlag)) {}
CameraControl& CameraControl::operator=(CameraControl& other)
{
    if (this != &other)
        m_pFlag = std::move(other.m_pFlag);
    return *this;
}
CameraControl::~CameraControl() = default;

bool CameraControl::retrieveControl()
{
    return Platform::Board::current()->retrieveCameraControl();
}
