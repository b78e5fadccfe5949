#ifndef VORBEL_CVORBEL_H
#define VORBEL_CVORBEL_H

/// \file
/// The one class of the library.

#include <vorbel/Export.h>
#include <vorbel/Records.h>

/// The orbit of one satellite: propagation, read-out at any time, reference frames and radar imaging geometry.
///
/// Load a state with InitLagrange(), then read the trajectory out (Lagrange()) and solve the imaging geometry
/// (GeoLocation(), GeoProssess(), centroid(), radial_speed()) for any time among the last integrator nodes.
///
/// **Units.** km, km/s, s; angles in radians except where an operation says degrees. A degree is 0.0174532925156 rad in
/// the whole library, which is 2.5e-10 of itself less than pi/180: a full turn reads as 360 degrees and 9e-8.
///
/// **Time.** `time` of a state counts seconds from 1900 January 1, 0h UT. Today's dates are near 4e9 s, where a double
/// resolves 4.8e-7 s.
///
/// **Frames.** The absolute frame is inertial; the Greenwich frame turns with the Earth. They share the origin and the
/// z axis and differ by the mean sidereal angle about z. The frame selector is 0 for Greenwich and otherwise absolute;
/// use 1 for absolute, the one value that GeoLocation() turns back into the Greenwich frame.
///
/// **Accuracy.** Over the length of a radar scene the force model loses decimetres, the integrator and the read-outs
/// far less than a millimetre. Cartesian ground points are exact to 1e-10 of the slant range; their latitude is of
/// first order in the flattening, 80 mm off at most on the ground and more with height. The accuracy page has the
/// figures.
///
/// **Errors.** No operation reports an error, throws, allocates or prints. Degenerate input comes back as not-a-number
/// values, a record of zeros or a default point; each operation says which.
///
/// **Threads.** There is no shared working storage. Distinct objects may be used on distinct threads at the same time,
/// propagation included. Calls on one object must not overlap if one of them is a non-const member: Lagrange() and the
/// imaging geometry count as such, since they keep the last interpolated state in the object.
class VORBEL_API CVorbel {
public:
    /// \name Object and state
    /// @{

    /// An object in the Greenwich frame on the WGS 84 ellipsoid (6378.137 km, 6356.752314245 km), all states and the
    /// step zero.
    CVorbel();

    /// Copies the whole object; the copy can read out the trajectory that its source propagated.
    CVorbel(const CVorbel& other);

    /// Copies the whole object.
    CVorbel& operator=(const CVorbel& other);

    /// The same as copying.
    CVorbel& operator=(CVorbel&& other) noexcept;

    /// Sets the current state. The read-outs go on using the history of the previous propagation until the next one.
    ///
    /// At the state's own `time` they, and with them the imaging geometry, give the new state itself, for any step but
    /// 0 and on a new object too. That is how to hand over states that the caller has interpolated, one for each
    /// azimuth line.
    /// \param[in] state  state in the frame of GetSystem(), km and km/s
    void setVector(const fVector& state);

    /// The current state: after a propagation, the state at the last integrator node.
    fVector getVector() const;

    /// Direct access to the object's records.
    /// \param[in] iIndex  0: the current state; 1: the derivative history, eight records at the last eight integrator
    ///                    nodes, oldest first
    /// \return the record, valid as long as the object; null for any other index
    fVector* GetfVector(int iIndex);

    /// Sets the integration step.
    /// \param[in] dStep  s; propagation uses its magnitude with the sign of the interval, the read-outs use it as it is
    void setStep(double dStep);

    /// The integration step, s.
    double getStep() const;

    /// Selects the frame of the states.
    /// \param[in] iSystem  0 = Greenwich (Earth-fixed), 1 = absolute (inertial)
    void SetSystem(int iSystem);

    /// The frame of the states: 0 = Greenwich (Earth-fixed), 1 = absolute (inertial).
    int GetSystem() const;

    /// Sets the ellipsoid on which the imaging geometry places its points.
    ///
    /// For a surface at height h above an ellipsoid call SetEllipsoid(a + h, b + h), which is right to 2 mm for each km
    /// of h. Latitude, longitude and height of the points stay reckoned in WGS 84. Drag has its own figure of the Earth
    /// and does not change.
    /// \param[in] dA  semi-major axis, km, not validated
    /// \param[in] dB  semi-minor axis, km, not validated
    void SetEllipsoid(double dA, double dB);

    /// The ellipsoid of the imaging geometry.
    /// \param[out] pdA  semi-major axis, km; must be valid
    /// \param[out] pdB  semi-minor axis, km; must be valid
    void GetEllipsoid(double* pdA, double* pdB) const;

    /// Distance of the current state from the Earth's centre, km.
    double dGetSat_radius() const;

    /// Sets the current state, the step and the frame together.
    /// \param[in] pState   state in the frame iSystem; must be valid
    /// \param[in] dStep    integration step, s
    /// \param[in] iSystem  0 = Greenwich (Earth-fixed), 1 = absolute (inertial)
    void SetProgParam(const fVector* pState, double dStep, int iSystem);

    /// @}
    /// \name Propagation
    /// The force model is central attraction and the second zonal harmonic; in the Greenwich frame the centrifugal and
    /// Coriolis accelerations of a frame turning at its own constant rate; and drag against the velocity as the state
    /// gives it (so against the turning air in the Greenwich frame, against the inertial velocity in the absolute one),
    /// of drag factor * density * speed^2, in a piecewise-exponential atmosphere between 0 and 20000 km above the
    /// Krasovsky ellipsoid. Outside that, and with `drag` 0, there is none.
    /// @{

    /// Advances a state by one step of the classical fourth-order Runge-Kutta method.
    /// \param[in] state  state in the frame of GetSystem()
    /// \param[in] dStep  s; negative integrates backwards, 0 gives the state back
    /// \return the state dStep later; `date` and `drag` are carried. Not-a-numbers if the state is at the Earth's
    ///         centre or not finite
    fVector runceK(const fVector& state, double dStep) const;

    /// Advances a state by one Adams-Bashforth-Moulton step of order 8 (predict, evaluate, correct, evaluate; the
    /// weights are the integrals of the Lagrange polynomials over a step) and renews the derivative history.
    ///
    /// The history must end at `state` and be built with this dStep, as prog() and the previous adams() leave it; that
    /// is not tested. On a new object the history is zero, and the step adds only the corrector's newest term.
    /// \param[in,out] state  state in the frame of GetSystem(); becomes the new state
    /// \param[in]     dStep  signed step, s
    /// \return a copy of the new state
    fVector adams(fVector& state, double dStep);

    /// Carries the current state over an interval at the object's step, to the first integrator node at or beyond the
    /// interval's end.
    ///
    /// The integrator starts afresh from the current state: seven steps of history behind it come from Runge-Kutta
    /// quarter steps. Steps are counted by adding them up, so a step of 0.1 over an interval of 1 makes eleven: ten
    /// times 0.1 falls short of 1 by rounding. At least one step is made, also for an interval of 0, then in the
    /// direction of the step's sign. getStep() does not change.
    ///
    /// It is the sum of the steps that reaches the interval's end. `time` is rounded to 4.8e-7 s at each step, and with
    /// fractions of a second it can come out one unit short of the end: propagate a second beyond the last time wanted,
    /// see InitLagrange().
    ///
    /// Every call ends, after as many steps as fit into the interval. What is no sensible interval or step:
    /// - more than 2^52 steps (a step of 0, a finite step for an infinite interval, a step too small to move the
    ///   running sum): nothing is propagated, state and history stay as they are;
    /// - a not-a-number interval: one step in the direction of the step's sign;
    /// - a not-a-number or infinite step: one step, to a state of no use, its position and velocity not-a-number;
    /// - a step of 0 with an interval of 0: the state comes back with a history of eight equal records, on which the
    ///   read-outs give not-a-number.
    ///
    /// \param[in] dInterval  s from the current state; negative propagates backwards
    /// \return a copy of the current state, then the state at the last node
    fVector prog(double dInterval);

    /// @}
    /// \name Dense output
    /// The state at any time among the last eight integrator nodes: the Lagrange polynomial through the stored
    /// derivatives, integrated back from the end state. The order is the number of newest nodes used, except that 5, 6
    /// and 7 use all eight.
    ///
    /// A time ahead of the end state counts as the time at the same distance behind it, so read out only times behind
    /// it. Times further back than the nodes used are extrapolated by the same polynomial. A zero step gives
    /// not-a-number. The static functions only read the object and the point they are given, so several threads may
    /// call them on one object; they take both by plain reference because callers keep pointers of that type.
    /// @{

    /// Loads a state and propagates it over an interval with a step chosen so that the history covers it.
    ///
    /// Up to 120 s the interval is made in two steps and can be read out as a whole. Order 7 then also reaches back to
    /// 2.5 dt before the start, so that a state vector in the middle of a scene serves all of it. Beyond 120 s the step
    /// is 120 s and the last seven steps can be read out.
    ///
    /// The interval must reach *beyond* the last time wanted: add a second, and compare that time with the `time` of
    /// getVector(). An interval that ends just there leaves the end state one unit of `time`, 4.8e-7 s, early in a
    /// quarter of all cases whose times hold fractions of a second, and GeoLocation() then answers with its default
    /// point. The other operations refuse no time: what lies beyond the interval comes back mirrored, 22 s beyond it
    /// some 300 km off, with a perfect height.
    ///
    /// Whatever prog() says of its interval holds for dt: an
    /// infinite dt loads the state and leaves the history as it was, dt = 0 gives a zero step.
    /// \param[in] pState   state in the frame iSystem; may point at this object's current state; must be valid
    /// \param[in] dt       interval, s; negative propagates backwards
    /// \param[in] iSystem  0 = Greenwich (Earth-fixed), 1 = absolute (inertial). Where it is left out after a
    ///                     step, as in InitLagrange(&state, 30, 15.0), the step becomes the frame; no compiler warns
    void InitLagrange(const fVector* pState, double dt, int iSystem);

    /// Loads a state and propagates it over an interval with the caller's step.
    /// \param[in] pState   state in the frame iSystem; may point at this object's current state; must be valid
    /// \param[in] dt       interval, s; negative propagates backwards
    /// \param[in] dStep    s; must have the sign of dt, or the read-outs look for the history on the wrong side
    /// \param[in] iSystem  0 = Greenwich (Earth-fixed), 1 = absolute (inertial); must not be left out, see above
    void InitLagrange(const fVector* pState, double dt, double dStep, int iSystem);

    /// The read-out for an order, to be taken once and called for many times.
    /// \param[in] iOrder  0 to 7
    /// \return the entry of ms_afunLagrangeOpt; that of order 0 for any other value
    FunLagrangeOpt GetFunLagrangeOpt(int iOrder) const;

    /// The read-outs by order, 0 to 7. Shared by the whole process: an entry written here changes what
    /// GetFunLagrangeOpt() returns, and nothing else.
    static FunLagrangeOpt ms_afunLagrangeOpt[8];

    /// Sets all nine fields of `out` to zero.
    /// \param[in]  obj  not read
    /// \param[out] out  the record of zeros
    /// \param[in]  t    not read
    static void s_LagrangeOpt_0(CVorbel& obj, fVector& out, double t);

    /// Read-out from one node: the straight line through the end state.
    /// \param[in]  obj  object with a propagated trajectory
    /// \param[out] out  all nine fields, in the frame of the trajectory; may be the object's own current state
    /// \param[in]  t    s, scale of fVector::time
    static void s_LagrangeOpt_1(CVorbel& obj, fVector& out, double t);

    /// Read-out from the two newest nodes; arguments as s_LagrangeOpt_1().
    static void s_LagrangeOpt_2(CVorbel& obj, fVector& out, double t);

    /// Read-out from the three newest nodes; arguments as s_LagrangeOpt_1().
    static void s_LagrangeOpt_3(CVorbel& obj, fVector& out, double t);

    /// Read-out from the four newest nodes; arguments as s_LagrangeOpt_1().
    static void s_LagrangeOpt_4(CVorbel& obj, fVector& out, double t);

    /// Read-out from all eight nodes; arguments as s_LagrangeOpt_1().
    static void s_LagrangeOpt_567(CVorbel& obj, fVector& out, double t);

    /// State at a time, kept in the object too as its last interpolated state.
    /// \param[in] pdTime  s, scale of fVector::time; must be valid
    /// \param[in] iOrder  1 to 7
    /// \return the state in the frame of the trajectory; nine zeros for an order out of range
    fVector Lagrange(const double* pdTime, int iOrder);

    /// State at a time, kept in the object too as its last interpolated state.
    /// \param[out] out     the state in the frame of the trajectory; nine zeros for an order out of range
    /// \param[in]  pdTime  s, scale of fVector::time; must be valid
    /// \param[in]  iOrder  1 to 7
    void Lagrange(fVector& out, const double* pdTime, int iOrder);

    /// Position and velocity at a time, from the four newest nodes.
    /// \param[out] out  `x` to `vz`, in the frame of the trajectory; its first three fields stay as they are
    /// \param[in]  t    s, scale of fVector::time
    void Lagrange4(fVectorSimple& out, double t) const;

    /// Position and velocity at an offset from the end state, from the four newest nodes.
    /// \param[out] out  `x` to `vz`, in the frame of the trajectory; its first three fields stay as they are
    /// \param[in]  dt   s; the state |dt| behind the end state, whatever the sign of dt
    void Lagrange4_rFv_t(fVectorSimple& out, double dt) const;

    /// Distance from a ground point to the satellite at an offset from the end state, from the four newest nodes.
    /// \param[in] point  `x`, `y`, `z` in the frame of the trajectory, km; nothing else is read
    /// \param[in] dt     s; the satellite |dt| behind the end state, whatever the sign of dt
    /// \return km
    double dLagrange4_rFv_t(const Geopoint& point, double dt) const;

    /// Lagrange4() of `obj`.
    static void s_Lagrange4(CVorbel& obj, fVectorSimple& out, double t);

    /// Lagrange4_rFv_t() of `obj`.
    static void s_Lagrange4_m_Fv_t(CVorbel& obj, fVectorSimple& out, double dt);

    /// dLagrange4_rFv_t() of `obj`.
    static double s_dLagrange4_rFv_t(CVorbel& obj, Geopoint& point, double dt);

    /// Position and velocity at an offset from the end state, from a chosen number of nodes.
    /// \param[in]  obj     object with a propagated trajectory
    /// \param[out] out     `x` to `vz`, in the frame of the trajectory, zeros for an order out of range; its first
    ///                     three fields stay as they are
    /// \param[in]  dt      s; the state |dt| behind the end state, whatever the sign of dt
    /// \param[in]  iOrder  1 to 7
    static void s_Lagrange_m_Fv_t(CVorbel& obj, fVectorSimple& out, double dt, int iOrder);

    /// @}
    /// \name Time and reference frames
    /// The Greenwich frame is the absolute frame turned about z by the sidereal angle, eastward, at 7.29211515e-5
    /// rad/s. There is no precession, nutation or polar motion. Not-a-number input gives not-a-number output. Nothing
    /// of the object is used.
    /// @{

    /// Mean sidereal angle at 0h UT of a day: Newcomb's polynomial from the epoch 1900 January 0.5.
    /// \param[in] dDay  whole day number, day 1 = 1900 January 1; a fraction of a day makes the angle wrong by almost
    ///                  that fraction of a turn, since the polynomial holds at 0h only
    /// \return rad, in [0, 2 pi) for days from -100 on, in (-2 pi, 0] before; 0 for an infinite day
    double StarTime(double dDay) const;

    /// Turns a state from the absolute into the Greenwich frame, at the sidereal angle of its own `date` and `time`.
    /// \param[in] v  absolute state
    /// \return Greenwich state, its velocity relative to the Earth; `date`, `time` and `drag` are those of v
    fVector ABS_Grnv(const fVector& v) const;

    /// Turns a state from the absolute into the Greenwich frame, at a given sidereal angle of its day.
    /// \param[in] v       absolute state
    /// \param[in] dAngle  sidereal angle at 0h of day v.date, degrees
    /// \return Greenwich state; `date`, `time` and `drag` are those of v
    fVector ABS_Grnv(const fVector& v, double dAngle) const;

    /// Turns a state from the absolute into the Greenwich frame, at a given sidereal angle of an instant.
    /// \param[in] v       absolute state
    /// \param[in] dAngle  sidereal angle at dTime0, degrees
    /// \param[in] dTime0  s, scale of v.time
    /// \return Greenwich state; `date`, `time` and `drag` are those of v
    fVector ABS_GrnvR_t(const fVector& v, double dAngle, double dTime0) const;

    /// Turns a state from the Greenwich into the absolute frame, at the sidereal angle of its own `date` and `time`.
    /// \param[in] v  Greenwich state
    /// \return absolute state; `date`, `time` and `drag` are those of v
    fVector Grnv_ABS(const fVector& v) const;

    /// Turns the state of a record from the absolute into the Greenwich frame, at the record's own `date` and `time`.
    /// \param[in]  in   record with an absolute state, whatever its `system` says
    /// \param[out] out  the turned record, `system` 0; may be the same record; its `state.drag` and `extra` stay
    void ABS_to_Grinvich(const Ephemeris_Struct* in, Ephemeris_Struct* out) const;

    /// Turns the state of a record from the Greenwich into the absolute frame, at the record's own `date` and `time`.
    /// \param[in]  in   record with a Greenwich state, whatever its `system` says
    /// \param[out] out  the turned record, `system` 1; may be the same record; its `state.drag` and `extra` stay
    void Grinvich_to_ABS(const Ephemeris_Struct* in, Ephemeris_Struct* out) const;

    /// @}
    /// \name Orbital elements
    /// Osculating Keplerian elements of the absolute frame by the relations of the two-body problem, with the
    /// gravitational parameter 398600.398 km^3/s^2. The force model's is 398600.000, so that elements of a propagated
    /// orbit carry that millionth. Nothing of the object is used.
    /// @{

    /// State of given elements.
    ///
    /// A circular orbit and any angles are accepted. What is no orbit gives not-a-number or infinite velocities: a
    /// parabola (e = 1), whose semi-latus rectum cannot come from `a`, or an ellipse's `a` with e above 1.
    /// \param[in,out] eph  `system` says which frame is wanted: 0 = Greenwich, any other value = absolute, which comes
    ///                     back as 1. The epoch is that of `el`; `state.time` repeats its seconds of the day. An
    ///                     absolute record is written as a whole, `state.drag` and `extra` 0; in a Greenwich one those
    ///                     two stay
    /// \param[in]     el   elements
    void Elements_to_Ephemeris(Ephemeris_Struct* eph, const Elements_Struct* el) const;

    /// Osculating elements of a state.
    ///
    /// What is undefined comes back as not-a-number: `nu` of a circular orbit (and `e`, when rounding makes its square
    /// negative); `u` of an equatorial orbit, unless it is retrograde; `incl` and `u` of a purely radial velocity;
    /// nearly everything at zero radius or zero speed. A parabola has an infinite `a`.
    /// \param[in]  eph  state with its epoch and frame; a Greenwich state is turned at the record's own `date` and
    ///                  `time`
    /// \param[out] el   `a`, `e`, `incl`, `raan`, `u`, `nu`; its epoch fields stay as they are
    void Ephemeris_to_Elements(const Ephemeris_Struct* eph, Elements_Struct* el) const;

    /// @}
    /// \name Orbit frames
    /// A right-handed orthonormal frame of the satellite: column j of the matrix is axis j, in the frame of the state.
    /// Axis 1 is the orbit normal r x v. A zero radius, or a velocity that is zero or purely radial, leaves
    /// not-a-number in the axes that it does not define. Nothing of the object is used.
    /// @{

    /// Velocity-aligned frame: axis 0 along the velocity, axis 2 upward in the orbit plane.
    /// \param[in]  v  state; position and velocity are read
    /// \param[out] m  three rows of three
    /// \return distance from the Earth's centre, km
    double matr_bariz(const fVector& v, double m[][3]) const;

    /// Radius-aligned frame: axis 2 along the radius, axis 0 forward in the orbit plane.
    /// \param[in]  v  state; position and velocity are read
    /// \param[out] m  three rows of three
    /// \return distance from the Earth's centre, km
    double matr_barizRECT(const fVector& v, double m[][3]) const;

    /// @}
    /// \name Imaging geometry
    /// Of a side-looking radar on the trajectory, at a time among the last integrator nodes. `iSide` is +1 for a radar
    /// that looks to the left of the flight direction (along r x v) and -1 for one that looks to the right; no other
    /// value has a meaning.
    ///
    /// The attitude angles turn the antenna out of the radius-aligned frame: yaw about the radius, roll about the
    /// along-track axis, pitch about the orbit normal, composed as Rz(yaw) Rx(roll) Ry(pitch). In the Greenwich frame
    /// that frame is built from the velocity relative to non-rotating axes.
    ///
    /// Ground points lie on the object's ellipsoid. They come from a Newton iteration in the look angle, ended by a
    /// step below 1e-10 rad or after 101 passes. A slant range shorter than the height above a sphere of 6371 km, or
    /// longer than to its far side, gives not-a-number. A beam that misses the ellipsoid gives the point of the last
    /// pass: its height tells. A slant range beyond the horizon gives the point behind it, which the Earth hides;
    /// nothing tells.
    ///
    /// A time after the current state is refused by GeoLocation() alone. The others take the state as far behind it, as
    /// all dense output does.
    /// @{

    /// Ground point in the beam of a given attitude, at a slant range.
    /// \param[in] dTime   s, scale of fVector::time; not after the current state, which after an interval that was to
    ///                    end at this very time can be one unit of `time` early: see InitLagrange()
    /// \param[in] dRange  slant range, km
    /// \param[in] iSide   +1 left, -1 right
    /// \param[in] dPitch  rad
    /// \param[in] dYaw    rad
    /// \param[in] dRoll   rad; while pitch and yaw are 0 it turns the beam plane within itself and moves no point
    /// \return the point, Cartesian coordinates in the Greenwich frame whatever the frame of the trajectory; the
    ///         default point, longitude and latitude 0, for a time after the current state
    Geopoint GeoLocation(double dTime, double dRange, int iSide, double dPitch, double dYaw, double dRoll);

    /// Ground point at a slant range and range rate (range-Doppler solution).
    /// \param[in] dTime       s, scale of fVector::time
    /// \param[in] dRange      slant range, km
    /// \param[in] dRangeRate  km/s, positive when the range grows; not-a-number comes back for one of the speed or
    ///                        above
    /// \param[in] iSide       +1 left, -1 right
    /// \return the point, Cartesian coordinates in the frame of the trajectory. `lat`, `lon` and `h` take them as
    ///         Earth-fixed, so `lon` is a right ascension when the trajectory is absolute
    Geopoint GeoProssess(double dTime, double dRange, double dRangeRate, int iSide);

    /// Doppler centroid of a beam in the radius-aligned frame, as a range rate.
    ///
    /// The Doppler frequency is -2/wavelength times it. A point on the Earth's axis counts as standing still. Mind the
    /// order: iSide is the last argument here and the third of GeoLocation(); put there, it is taken for the pitch and
    /// the roll for the side, which compiles.
    /// \param[in] dTime   s, scale of fVector::time
    /// \param[in] dRange  slant range, km
    /// \param[in] dPitch  rad
    /// \param[in] dYaw    rad
    /// \param[in] dRoll   rad
    /// \param[in] iSide   +1 left, -1 right
    /// \return range rate of the beam centre on the turning Earth, km/s, positive when the range grows; not-a-number
    ///         where there is no ground point
    double centroid(double dTime, double dRange, double dPitch, double dYaw, double dRoll, int iSide);

    /// Doppler centroid of a beam in the velocity-aligned frame, as a closing speed: the opposite sign of centroid().
    ///
    /// The beam is turned by Ry(pitch) Rz(-yaw). The Earth's rotation builds the frame in a Greenwich trajectory, and
    /// does not enter the speed in either frame.
    /// \param[in] dTime    s, scale of fVector::time
    /// \param[in] dRange   slant range, km
    /// \param[in] dPitch   rad
    /// \param[in] dYaw     rad
    /// \param[in] dUnused  not read
    /// \param[in] iSide    +1 left, -1 right
    /// \return speed of the satellite along the line of sight, in the frame of the trajectory, km/s, positive towards
    ///         the point; not-a-number where there is no ground point
    double centroid_NEW(double dTime, double dRange, double dPitch, double dYaw, double dUnused, int iSide);

    /// Slant range and range rate to a ground point.
    ///
    /// The point is compared with the trajectory as it is, so this is meant for a Greenwich trajectory.
    /// \param[in]  dTime    s, scale of fVector::time
    /// \param[in]  dLat     geodetic latitude on WGS 84, whatever SetEllipsoid() set, degrees
    /// \param[in]  dLon     longitude east, degrees
    /// \param[in]  dHeight  height above WGS 84, km
    /// \param[out] pdRange  slant range, km; must be valid
    /// \return range rate, km/s, positive when the range grows; not-a-number if the point is the satellite
    double radial_speed(double dTime, double dLat, double dLon, double dHeight, double* pdRange);

    /// Direction of the velocity relative to the Earth, in the radius-aligned frame.
    ///
    /// The yaw comes without its sign. To steer a beam to zero Doppler with centroid(), on either side, pass minus this
    /// pitch, roll 0, and this yaw while the satellite moves north, minus this yaw while it moves south: the relative
    /// velocity leans towards the orbit normal r x v where the geocentric latitude grows and away from it where it
    /// falls.
    /// \param[in]  dTime    s, scale of fVector::time
    /// \param[out] pdPitch  elevation above the local horizontal plane, rad; must be valid
    /// \param[out] pdYaw    angle between its horizontal part and the along-track axis, rad, [0, pi]; must be valid.
    ///                      Not-a-number for a purely radial velocity
    /// \param[out] pdRoll   0; must be valid
    /// \return speed relative to the Earth, km/s
    double attitude(double dTime, double* pdPitch, double* pdYaw, double* pdRoll);

    /// Pitch and yaw, in the velocity-aligned frame, of the plane through the satellite and two points given by range
    /// and range rate: of its normal (second line of sight) x (first line of sight).
    ///
    /// Points that GeoProssess() cannot find, or that lie in line with the satellite, give not-a-number.
    /// \param[in]  dTime        s, scale of fVector::time
    /// \param[in]  dRange1      slant range of the first point, km
    /// \param[in]  dRangeRate1  its range rate in the frame of the trajectory, km/s, positive when the range grows
    /// \param[in]  dRange2      slant range of the second point, km; swapping the points turns the normal round
    /// \param[in]  dRangeRate2  its range rate, km/s
    /// \param[out] pdPitch      degrees; must be valid
    /// \param[out] pdYaw        degrees, from 0 to 4.5e-8 above 180; must be valid. Written first, so that with one
    ///                          variable for both the pitch remains
    /// \param[in]  iSide        +1 left, -1 right
    void PitchYaw(double dTime, double dRange1, double dRangeRate1, double dRange2, double dRangeRate2, double* pdPitch,
                  double* pdYaw, int iSide);

    /// @}

private:
    fVector right(const fVector& state) const;
    void adamsR(const fVector& state, double dStep);

    // [0] current state, [1] last interpolated state, [2] to [9] derivatives at the last eight nodes, oldest first
    fVector m_afVector[10];
    double m_dStep;  // s; the read-outs take it as the signed step of the history
    int m_iSystem;   // 0 = Greenwich frame, otherwise absolute
    double m_dA;     // semi-major axis of the imaging geometry's ellipsoid, km
    double m_dB;     // semi-minor axis, km
};

static_assert(sizeof(void*) != 8 || sizeof(CVorbel) == 752, "layout of CVorbel on 64-bit platforms");

#endif
