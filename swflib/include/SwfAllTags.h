// Every tag class, for the factory and the XML dispatch.
#pragma once

#include "SwfTag.h"
#include "SwfTagDefineButton.h"
#include "SwfTagDefineSprite.h"
#include "SwfTagsBitmap.h"
#include "SwfTagsButton.h"
#include "SwfTagDoAction.h"
#include "SwfTagsControl.h"
#include "SwfTagsSound.h"
#include "SwfTagsVideo.h"
