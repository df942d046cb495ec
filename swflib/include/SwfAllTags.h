// Every tag class, for the factory and the XML dispatch.
#pragma once

#include "SwfTag.h"
#include "SwfTagDefineSprite.h"
#include "SwfTagPlaceObject.h"
#include "SwfTagRemoveObject.h"
#include "SwfTagDoAction.h"
#include "SwfTagsAssets.h"
#include "SwfTagsControl.h"
