#pragma once

// Every recording fake of the ports.
#include "FakeHotKeyGrabber.h"
#include "FakeKeystrokeSender.h"
#include "FakeLinkMetadataProvider.h"
#include "FakePasteboard.h"
#include "FakeTextRecognizer.h"
#include "FakeWindowSystem.h"
#include "FakeWorkspace.h"
