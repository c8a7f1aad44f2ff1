// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// All header metadata sets.
#include <QUIRE/MXF/Descriptors.h>
#include <QUIRE/MXF/InterchangeObject.h>
#include <QUIRE/MXF/Packages.h>
#include <QUIRE/MXF/Preface.h>
#include <QUIRE/MXF/SubDescriptors.h>
