// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// @file
/// The playlist and timeline engine of a digital-cinema playback server.
///
/// A server makes a playlist (NewPlaylist) and initialises it from a show playlist, from a composition playlist, or from
/// a list of identifiers. The playlist resolves every asset through the server's IAssetLookup and lays the show out as
/// a timeline of reels, each with its tracks. The server then moves the position by edit units, asks for the track of a
/// type and channel, takes its frames, and hears of positions and events through its ITransportNotify.
///
///     show        |---------- composition A ---------|------- composition B -------| ...
///     timeline    |-- reel --|-- reel --|--  reel  --|--   reel   --|--   reel   --| ...
///     per reel    picture, sound, on-screen text, up to 6 off-screen texts, any number of data tracks
///
/// A good order to read the headers in:
///   Types, Result, Version          numbers, identifiers, results
///   TrackType, ITimelineTrack       one track of one reel
///   PlayedSpan                      which of its frames play
///   FrameLock, FrameRequester       taking them, with one asked for ahead
///   SoundConfiguration              how a sound track file uses its channels, as a text
///   CommandType, Command            what the transport is asked to do
///   TimelinePosition, CompositionInfo, EssenceParams, PlaylistEvent
///                                   where the show stands, and what plays there
///   DeviceStatus, TransportException, ITransportNotify
///                                   what is reported while it plays
///   IPlaylist                       the timeline
///   ShowPlaylist, ResourcePresentationList
///                                   the documents of its own that it reads and writes
///   AssetInfo, PlaylistInfo, TaskType, TaskStatus, DiskFreeInfo, RPCInitInfo
///                                   the rest of the control protocol
///   RestartInternals, ServerEvents, ServerOptions, TransportOptions
///                                   names for the server that links the library

#include <Strata/AssetInfo.h>
#include <Strata/Command.h>
#include <Strata/CommandType.h>
#include <Strata/CompositionInfo.h>
#include <Strata/DeviceStatus.h>
#include <Strata/DiskFreeInfo.h>
#include <Strata/EssenceParams.h>
#include <Strata/Export.h>
#include <Strata/FrameLock.h>
#include <Strata/FrameRequester.h>
#include <Strata/IPlaylist.h>
#include <Strata/ITimelineTrack.h>
#include <Strata/ITransportNotify.h>
#include <Strata/PlayedSpan.h>
#include <Strata/PlaylistEvent.h>
#include <Strata/PlaylistInfo.h>
#include <Strata/RPCInitInfo.h>
#include <Strata/ResourcePresentationList.h>
#include <Strata/RestartInternals.h>
#include <Strata/Result.h>
#include <Strata/ServerEvents.h>
#include <Strata/ServerOptions.h>
#include <Strata/ShowPlaylist.h>
#include <Strata/SoundConfiguration.h>
#include <Strata/TaskStatus.h>
#include <Strata/TaskType.h>
#include <Strata/TimelinePosition.h>
#include <Strata/TrackType.h>
#include <Strata/TransportException.h>
#include <Strata/TransportOptions.h>
#include <Strata/Types.h>
#include <Strata/Version.h>
