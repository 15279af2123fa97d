#pragma once

// Every recording fake of the ports.
#include "FakeHotKeyGrabber.h"
#include "FakeKeystrokeSender.h"
#include "FakePasteboard.h"
#include "FakeWindowSystem.h"
#include "FakeWorkspace.h"
