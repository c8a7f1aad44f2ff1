// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/RestartInternals.h>
#include <Strata/ServerEvents.h>
#include <Strata/ServerOptions.h>
#include <Strata/TransportOptions.h>

#include <Cairn/PListDict.h>

#include <gtest/gtest.h>

namespace Strata {
namespace {

TEST(RestartInternals, NamesArePathsBelowTheDataDirectory) {
  EXPECT_STREQ(RestartInternals::DataDirectory, "restart");
  EXPECT_STREQ(RestartInternals::PositionName, "restart/strata-restart-position");
  EXPECT_STREQ(RestartInternals::LoadListName, "restart/strata-restart-load-list");
  EXPECT_STREQ(RestartInternals::LoadXMLName, "restart/strata-restart-load-xml");
}

TEST(ServerEvents, LabelsAndTheirScope) {
  EXPECT_STREQ(ServerEvents::Scope, "http://www.strata.example/ra/xsd/strata-spl-1#server-events");
  EXPECT_STREQ(ServerEvents::TransportPlay, "transport-play");
  EXPECT_STREQ(ServerEvents::TransportEnd, "transport-end");
  EXPECT_STREQ(ServerEvents::TransportStop, "transport-stop");
  EXPECT_STREQ(ServerEvents::TransportStopError, "transport-stop-error");
  EXPECT_STREQ(ServerEvents::TransportUnload, "transport-unload");
  EXPECT_STREQ(ServerEvents::TransportLoad, "transport-load");
}

TEST(ServerOptions, NetworkAndDeviceKeys) {
  EXPECT_STREQ(ServerOptions::BindAddress, "BindAddress");
  EXPECT_STREQ(ServerOptions::IPV4Address, "IPV4Address");
  EXPECT_STREQ(ServerOptions::ListenPort, "ListenPort");
  EXPECT_STREQ(ServerOptions::SmsSubjectName, "SmsSubjectName");
  EXPECT_STREQ(ServerOptions::SyslogFacility, "SyslogFacility");
  EXPECT_STREQ(ServerOptions::Controller, "Controller");
  EXPECT_STREQ(ServerOptions::Master, "Master");
  EXPECT_STREQ(ServerOptions::DeviceName, "DeviceName");
  EXPECT_STREQ(ServerOptions::DeviceVersion, "DeviceVersion");
  EXPECT_STREQ(ServerOptions::DevicePubKeyThumbprint, "DevicePubKeyThumbprint");
  EXPECT_STREQ(ServerOptions::ProcessID, "ProcessID");
}

TEST(ServerOptions, PlayerKeysAreWithinTheirGroup) {
  EXPECT_STREQ(ServerOptions::Player, "Player");
  EXPECT_STREQ(ServerOptions::Player_PluginSet, "PluginSet");
  EXPECT_STREQ(ServerOptions::Player_TransportId, "TransportId");
  EXPECT_STREQ(ServerOptions::Player_TransportName, "TransportName");
  EXPECT_STREQ(ServerOptions::Player_TransportModule, "TransportModule");
  EXPECT_STREQ(ServerOptions::Player_AssetStoreHost, "AssetStoreHost");
  EXPECT_STREQ(ServerOptions::Player_LocalPaths, "LocalPaths");
  EXPECT_STREQ(ServerOptions::Player_UnloadOnFail, "UnloadOnFail");
  EXPECT_STREQ(ServerOptions::Player_PowerFailResumeMode, "PowerFailResumeMode");
  EXPECT_STREQ(ServerOptions::Player_PowerFailResumeMode_Stop, "Stop");
  EXPECT_STREQ(ServerOptions::Player_PowerFailResumeMode_Pause, "Pause");
  EXPECT_STREQ(ServerOptions::Player_PowerFailResumeMode_Play, "Play");
  EXPECT_STREQ(ServerOptions::Player_PowerFailResumeMode_None, "None");
  EXPECT_STREQ(ServerOptions::Player_ShowExpirationTimestamp, "ShowExpirationTimestamp");
}

TEST(ServerOptions, AssetStoreKeysAreWithinTheirGroup) {
  EXPECT_STREQ(ServerOptions::AssetStore, "AssetStore");
  EXPECT_STREQ(ServerOptions::AssetStore_StoreRoot, "StoreRoot");
  EXPECT_STREQ(ServerOptions::AssetStore_IngestPaths, "IngestPaths");
  EXPECT_STREQ(ServerOptions::AssetStore_StoreData, "StoreData");
  EXPECT_STREQ(ServerOptions::AssetStore_AnalyzerConcurrency, "AnalyzerConcurrency");
  EXPECT_STREQ(ServerOptions::AssetStore_ThrottleBps, "ThrottleBps");
  EXPECT_STREQ(ServerOptions::AssetStore_IngestInteropKDM, "IngestInteropKDM");
  EXPECT_STREQ(ServerOptions::AssetStore_DiskFree, "DiskFree");
}

TEST(ServerOptions, CertificateRoles) {
  EXPECT_STREQ(ServerOptions::CertRole_SM, "SM");
  EXPECT_STREQ(ServerOptions::CertRole_LS, "LS");
  EXPECT_STREQ(ServerOptions::CertRole_LD, "LD");
  EXPECT_STREQ(ServerOptions::CertRole_PR, "PR");
  EXPECT_STREQ(ServerOptions::CertRole_SMS, "SMS");
  EXPECT_STREQ(ServerOptions::CertRole_SCD, "SCD");
}

TEST(TransportOptions, PictureKeysAndValues) {
  EXPECT_STREQ(TransportOptions::ColorSpace, "ColorSpace");
  EXPECT_STREQ(TransportOptions::ColorSpace_RGB, "RGB");
  EXPECT_STREQ(TransportOptions::ColorSpace_XYZ, "XYZ");
  EXPECT_STREQ(TransportOptions::Auto3DPlaylist, "Auto3DPlaylist");
  EXPECT_STREQ(TransportOptions::Auto3DPlaylist_Enable, "Enable");
  EXPECT_STREQ(TransportOptions::Auto3DPlaylist_Disable, "Disable");
  EXPECT_STREQ(TransportOptions::StereoEyeSelection, "StereoEyeSelection");
  EXPECT_STREQ(TransportOptions::StereoEyeSelection_Left, "Left");
  EXPECT_STREQ(TransportOptions::StereoEyeSelection_Right, "Right");
  EXPECT_STREQ(TransportOptions::LinkEncryptionMode, "LinkEncryptionMode");
  EXPECT_STREQ(TransportOptions::LinkEncryptionMode_Enable, "Enable");
  EXPECT_STREQ(TransportOptions::LinkEncryptionMode_Disable, "Disable");
  EXPECT_STREQ(TransportOptions::WatermarkMode, "WatermarkMode");
  EXPECT_STREQ(TransportOptions::WatermarkMode_Enable, "Enable");
  EXPECT_STREQ(TransportOptions::WatermarkMode_Disable, "Disable");
  EXPECT_STREQ(TransportOptions::WatermarkBanner, "WatermarkBanner");
  EXPECT_STREQ(TransportOptions::BufferFillLevel, "BufferFillLevel");
}

TEST(TransportOptions, DVIKeysAndValues) {
  EXPECT_STREQ(TransportOptions::DVIOutputMode, "DVIOutputMode");
  EXPECT_STREQ(TransportOptions::DVIOutputMode_Enable, "Enable");
  EXPECT_STREQ(TransportOptions::DVIOutputMode_Disable, "Disable");
  EXPECT_STREQ(TransportOptions::DVIOutputFormat, "DVIOutputFormat");
  EXPECT_STREQ(TransportOptions::DVIOutputFormat_1920x1080_24p, "1920x1080_24p");
  EXPECT_STREQ(TransportOptions::DVIOutputFormat_1920x1080_48p, "1920x1080_48p");
  EXPECT_STREQ(TransportOptions::DVIOutputFormat_2048x1080_24p, "2048x1080_24p");
  EXPECT_STREQ(TransportOptions::DVIOutputFormat_2048x1080_48p, "2048x1080_48p");
  EXPECT_STREQ(TransportOptions::DVIImagePosition, "DVIImagePosition");
  EXPECT_STREQ(TransportOptions::DVIImagePosition_Center, "Center");
  EXPECT_STREQ(TransportOptions::DVIImagePosition_Left, "Left");
  EXPECT_STREQ(TransportOptions::DVIImagePosition_Right, "Right");
}

TEST(TransportOptions, SoundAndProjectorKeys) {
  EXPECT_STREQ(TransportOptions::AudioOutputDelay, "AudioOutputDelay");
  EXPECT_STREQ(TransportOptions::AudioChannelMode, "AudioChannelMode");
  EXPECT_STREQ(TransportOptions::ProjectorAddress, "Projectors");
  EXPECT_STREQ(TransportOptions::ProjectorName, "Name");
}

TEST(TransportOptions, KeysWorkInAnOptionsDictionary) {
  const Cairn::PListDict options{{TransportOptions::ColorSpace, TransportOptions::ColorSpace_XYZ}};
  EXPECT_EQ(options.at(TransportOptions::ColorSpace), "XYZ");
}

}  // namespace
}  // namespace Strata
