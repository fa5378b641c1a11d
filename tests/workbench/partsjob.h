// A small job with components on both sides, nets and attributes, for tests of what is said and found of
// them: a board of 20 by 10 mm with U1 on top, R1 on the bottom side, and a panel of two of it.
#pragma once

#include "tests/cam/support/jobfolder.h"

inline void writePartsJob(const JobFolder &job)
{
    job.write("matrix/matrix", "STEP {\n COL=1\n NAME=PCB\n}\nSTEP {\n COL=2\n NAME=PANEL\n}\n"
                               "LAYER {\n ROW=1\n CONTEXT=BOARD\n TYPE=COMPONENT\n NAME=COMP_+_TOP\n}\n"
                               "LAYER {\n ROW=2\n CONTEXT=BOARD\n TYPE=SIGNAL\n NAME=TOP\n}\n"
                               "LAYER {\n ROW=3\n CONTEXT=BOARD\n TYPE=SIGNAL\n NAME=BOTTOM\n}\n"
                               "LAYER {\n ROW=4\n CONTEXT=BOARD\n TYPE=COMPONENT\n NAME=COMP_+_BOT\n}\n");
    job.write("fonts/standard", "XSIZE 0.3\nYSIZE 0.3\nOFFSET 0\nCHAR A\nLINE 0 0 0.1 0.2 P R 0.012\n"
                                "LINE 0.1 0.2 0.2 0 P R 0.012\nECHAR\n");
    job.features("$0 r1000\n$1 rect2000x500\n$2 r200\n@0 .smd\n@1 .string\n&0 first pad\n"
                 "P 5 5 0 P 0 0;0,1=0\n"                  // record 0, line 8: GND
                 "L 5 5 10 5 2 P 0\n"                     // record 1: GND
                 "T 2 8 standard P 0 0.4 0.4 1 'A A' 1\n" // record 2: two A's of two strokes
                 "P 15 5 1 P 0 0;0\n",                    // record 3, line 11: VCC
                 "top");
    job.features("$0 r1000\nP 5 2 0 P 0 0\n", "bottom");
    job.write("steps/pcb/eda/data",
              "HDR our own\nUNITS=MM\nLYR top bottom\nNET $NONE$\nNET GND\nSNT TRC\nFID C 0 0\nFID C 0 "
              "1\nFID C 1 0\n"
              "NET VCC\nSNT TRC\nFID C 0 3\n"
              "PKG SO8 1.27 -2 -1 2 1\nRC -2 -1 4 2\nPIN 1 S -1.5 0 0 U U\nPIN 2 S 1.5 0 0 U U\n"
              "PKG R0603 1.6 -0.8 -0.4 0.8 0.4\nRC -0.8 -0.4 1.6 0.8\nPIN 1 S -0.7 0 0 U U\n");
    job.write("steps/pcb/layers/comp_+_top/components",
              "UNITS=MM\n@0 .comp_mount_type\nCMP 0 12 5 0 N U1 LM358 ;0=1\nPRP Maker 'Someone'\n"
              "TOP 0 10.5 5 0 N 1 0 1\nTOP 1 13.5 5 0 N 2 0 2\n");
    job.write("steps/pcb/layers/comp_+_bot/components",
              "UNITS=MM\nCMP 1 5 2 90 N R1 100R\nTOP 0 5 2.7 0 N 1 0 1\n");
    job.write("steps/panel/stephdr", "UNITS=MM\nSTEP-REPEAT {\n NAME=pcb\n X=0\n Y=0\n DX=30\n DY=0\n NX=2\n "
                                     "NY=1\n ANGLE=0\n MIRROR=NO\n}\n");
    job.write("steps/panel/profile", "UNITS=MM\nS P 0\nOB 0 0 I\nOS 50 0\nOS 50 10\nOS 0 10\nOE\nSE\n");
}
