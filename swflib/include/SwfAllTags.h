// Every tag class, for the factory and the XML dispatch.
#pragma once

#include "SwfTag.h"
#include "SwfTagDefineMorphShape.h"
#include "SwfTagDefineShape.h"
#include "SwfTagDefineSprite.h"
#include "SwfTagDoAction.h"
#include "SwfTagsAssets.h"
#include "SwfTagsControl.h"
