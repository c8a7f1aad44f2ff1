// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Keys of a transport device's configuration, and the values that some of them take (`Key_Value`). The library does
/// not read them.
namespace Strata::TransportOptions {

inline constexpr const char* ColorSpace = "ColorSpace";
inline constexpr const char* ColorSpace_RGB = "RGB";
inline constexpr const char* ColorSpace_XYZ = "XYZ";

inline constexpr const char* Auto3DPlaylist = "Auto3DPlaylist";
inline constexpr const char* Auto3DPlaylist_Enable = "Enable";
inline constexpr const char* Auto3DPlaylist_Disable = "Disable";

inline constexpr const char* StereoEyeSelection = "StereoEyeSelection";
inline constexpr const char* StereoEyeSelection_Left = "Left";
inline constexpr const char* StereoEyeSelection_Right = "Right";

inline constexpr const char* DVIOutputMode = "DVIOutputMode";
inline constexpr const char* DVIOutputMode_Enable = "Enable";
inline constexpr const char* DVIOutputMode_Disable = "Disable";

inline constexpr const char* DVIOutputFormat = "DVIOutputFormat";
inline constexpr const char* DVIOutputFormat_1920x1080_24p = "1920x1080_24p";
inline constexpr const char* DVIOutputFormat_1920x1080_48p = "1920x1080_48p";
inline constexpr const char* DVIOutputFormat_2048x1080_24p = "2048x1080_24p";
inline constexpr const char* DVIOutputFormat_2048x1080_48p = "2048x1080_48p";

inline constexpr const char* DVIImagePosition = "DVIImagePosition";
inline constexpr const char* DVIImagePosition_Center = "Center";
inline constexpr const char* DVIImagePosition_Left = "Left";
inline constexpr const char* DVIImagePosition_Right = "Right";

inline constexpr const char* LinkEncryptionMode = "LinkEncryptionMode";
inline constexpr const char* LinkEncryptionMode_Enable = "Enable";
inline constexpr const char* LinkEncryptionMode_Disable = "Disable";

inline constexpr const char* WatermarkMode = "WatermarkMode";
inline constexpr const char* WatermarkMode_Enable = "Enable";
inline constexpr const char* WatermarkMode_Disable = "Disable";
inline constexpr const char* WatermarkBanner = "WatermarkBanner";

inline constexpr const char* AudioOutputDelay = "AudioOutputDelay";
inline constexpr const char* AudioChannelMode = "AudioChannelMode";

inline constexpr const char* ProjectorAddress =
    "Projectors";  // not the constant's name: existing configurations say so
inline constexpr const char* ProjectorName = "Name";

inline constexpr const char* BufferFillLevel = "BufferFillLevel";

}  // namespace Strata::TransportOptions
