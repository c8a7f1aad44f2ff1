// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Keys of a server's configuration, and the values that some of them take (`Key_Value`). A name `Group_Key` is a key
/// within the group of that name. The library does not read them.
namespace Strata::ServerOptions {

inline constexpr const char* BindAddress = "BindAddress";
inline constexpr const char* IPV4Address = "IPV4Address";
inline constexpr const char* ListenPort = "ListenPort";
inline constexpr const char* SmsSubjectName = "SmsSubjectName";
inline constexpr const char* SyslogFacility = "SyslogFacility";

inline constexpr const char* Player = "Player";
inline constexpr const char* Player_PluginSet = "PluginSet";
inline constexpr const char* Player_TransportId = "TransportId";
inline constexpr const char* Player_TransportName = "TransportName";
inline constexpr const char* Player_TransportModule = "TransportModule";
inline constexpr const char* Player_AssetStoreHost = "AssetStoreHost";
inline constexpr const char* Player_LocalPaths = "LocalPaths";
inline constexpr const char* Player_UnloadOnFail = "UnloadOnFail";
inline constexpr const char* Player_PowerFailResumeMode = "PowerFailResumeMode";
inline constexpr const char* Player_PowerFailResumeMode_Stop = "Stop";
inline constexpr const char* Player_PowerFailResumeMode_Pause = "Pause";
inline constexpr const char* Player_PowerFailResumeMode_Play = "Play";
inline constexpr const char* Player_PowerFailResumeMode_None = "None";
inline constexpr const char* Player_ShowExpirationTimestamp = "ShowExpirationTimestamp";

inline constexpr const char* AssetStore = "AssetStore";
inline constexpr const char* AssetStore_StoreRoot = "StoreRoot";
inline constexpr const char* AssetStore_IngestPaths = "IngestPaths";
inline constexpr const char* AssetStore_StoreData = "StoreData";
inline constexpr const char* AssetStore_AnalyzerConcurrency = "AnalyzerConcurrency";
inline constexpr const char* AssetStore_ThrottleBps = "ThrottleBps";
inline constexpr const char* AssetStore_IngestInteropKDM = "IngestInteropKDM";
inline constexpr const char* AssetStore_DiskFree = "DiskFree";

inline constexpr const char* Controller = "Controller";
inline constexpr const char* Master = "Master";
inline constexpr const char* DeviceName = "DeviceName";
inline constexpr const char* DeviceVersion = "DeviceVersion";
inline constexpr const char* DevicePubKeyThumbprint = "DevicePubKeyThumbprint";
inline constexpr const char* ProcessID = "ProcessID";

// Roles in a device certificate's name (ST 430-2).
inline constexpr const char* CertRole_SM = "SM";    ///< security manager
inline constexpr const char* CertRole_LS = "LS";    ///< line server
inline constexpr const char* CertRole_LD = "LD";    ///< link decryptor
inline constexpr const char* CertRole_PR = "PR";    ///< projector
inline constexpr const char* CertRole_SMS = "SMS";  ///< screen management system
inline constexpr const char* CertRole_SCD = "SCD";

}  // namespace Strata::ServerOptions
