// SPDX-License-Identifier: MIT
// A host for tests and what it consists of; it needs no platform.
#pragma once

#include "tests/support/fake_browsers.h"
#include "tests/support/fake_dialogs.h"
#include "tests/support/fake_document.h"
#include "tests/support/fake_prompts.h"
#include "tests/support/fixed_clock.h"
#include "tests/support/memory_files.h"
#include "tests/support/recording_connections.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_application.h"
