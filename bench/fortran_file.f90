! Whole files as a Fortran program writes them from its arrays: one formatted WRITE for each record.
module fortran_file
    use, intrinsic :: iso_c_binding, only: c_char, c_float, c_int32_t
    implicit none
    private
    integer :: unit

contains

    subroutine fortran_open(path, path_length) bind(c)
        integer(c_int32_t), value :: path_length
        character(kind=c_char), intent(in) :: path(path_length)
        character(len=path_length) :: name
        integer :: i
        do i = 1, path_length
            name(i:i) = path(i)
        end do
        open (newunit=unit, file=name, form='formatted', status='replace', action='write')
    end subroutine

    subroutine fortran_names(names, count) bind(c)
        integer(c_int32_t), value :: count
        character(kind=c_char), intent(in) :: names(40*count)
        call write_names(names, count)
    end subroutine

    ! The characters of `names`, seen as texts.
    subroutine write_names(names, count)
        integer(c_int32_t), intent(in) :: count
        character(len=40), intent(in) :: names(count)
        integer :: i
        do i = 1, count
            write (unit, '(I5,5x,A40)') i, names(i)
        end do
    end subroutine

    subroutine fortran_rows(integers, reals, count) bind(c)
        integer(c_int32_t), value :: count
        integer(c_int32_t), intent(in) :: integers(4, count)
        real(c_float), intent(in) :: reals(16, count)
        integer :: i
        do i = 1, count
            write (unit, '(4(I5),16(F15.5))') integers(:, i), reals(:, i)
        end do
    end subroutine

    subroutine fortran_parameters(values, count) bind(c)
        integer(c_int32_t), value :: count
        real(c_float), intent(in) :: values(40, count)
        integer :: segment, i
        do segment = 1, count
            write (unit, "(I5,5X,'Segment')") segment
            do i = 1, 40
                write (unit, "('Parameter: ',I5,5X,' Instance: ',I3,'  Value: ',F20.4)") &
                    (i + 1)/2, 2 - mod(i, 2), values(i, segment)
            end do
        end do
    end subroutine

    subroutine fortran_pairs(times, values, count) bind(c)
        integer(c_int32_t), value :: count
        real(c_float), intent(in) :: times(count), values(count)
        integer :: i
        do i = 1, count
            write (unit, '(F10.4,5x,F10.4)') times(i), values(i)
        end do
    end subroutine

    subroutine fortran_free_pairs(times, values, count) bind(c)
        integer(c_int32_t), value :: count
        real(c_float), intent(in) :: times(count), values(count)
        integer :: i
        do i = 1, count
            write (unit, '(2(1PG14.6))') times(i), values(i)
        end do
    end subroutine

    subroutine fortran_close() bind(c)
        close (unit)
    end subroutine

end module
