// A chip on the floor of a flat box of air, below a cold lid, in metres. Ahead of this script stands
// gap = ...; the distance between chip and lid.
SetFactory("OpenCASCADE");

If (gap <= 0)
  Error("a gap of %g m leaves no air between chip and lid", gap);
  Abort;
EndIf

side = 0.020; chip = 0.010; chip_height = 0.002;
height = chip_height + gap;
e = 1e-6; // slack of the boxes that entities are found by

Box(1) = {0, 0, 0, side, side, height};
Box(2) = {(side - chip) / 2, (side - chip) / 2, 0, chip, chip, chip_height};
BooleanDifference(3) = { Volume{1}; Delete; }{ Volume{2}; };
Coherence;

Physical Volume("air") = {3};
Physical Volume("chip") = {2};
Physical Surface("lid") = Surface In BoundingBox {-e, -e, height - e, side + e, side + e, height + e};
