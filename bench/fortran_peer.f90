! Reals, and whole files, as a Fortran program writes them from its arrays.
module fortran_peer
    use, intrinsic :: iso_c_binding, only: c_char, c_float, c_int32_t
    implicit none
    private
    integer :: unit

contains

    subroutine fortran_reals(values, count, width, layout, layout_length, text) bind(c)
        integer(c_int32_t), value :: count, width, layout_length
        real(c_float), intent(in) :: values(count)
        character(kind=c_char), intent(in) :: layout(layout_length)
        character(kind=c_char), intent(inout) :: text(width*count)
        call write_fields(values, count, width, joined(layout), text)
    end subroutine

    ! The characters of `text`, seen as fields of `width`.
    subroutine write_fields(values, count, width, layout, fields)
        integer(c_int32_t), intent(in) :: count, width
        real(c_float), intent(in) :: values(count)
        character(len=*), intent(in) :: layout
        character(len=width), intent(inout) :: fields(count)
        write (fields, layout) values
    end subroutine

    pure function joined(characters) result(text)
        character(kind=c_char), intent(in) :: characters(:)
        character(len=size(characters)) :: text
        text = transfer(characters, text)
    end function

    subroutine fortran_open(path, path_length) bind(c)
        integer(c_int32_t), value :: path_length
        character(kind=c_char), intent(in) :: path(path_length)
        open (newunit=unit, file=joined(path), form='formatted', status='replace', action='write')
    end subroutine

    subroutine fortran_names(names, count) bind(c)
        integer(c_int32_t), value :: count
        character(kind=c_char), intent(in) :: names(40, count)
        integer :: i
        do i = 1, count
            write (unit, '(I5,5x,A40)') i, joined(names(:, i))
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

    subroutine fortran_parameters(values, segment, count) bind(c)
        integer(c_int32_t), value :: segment, count
        real(c_float), intent(in) :: values(count)
        integer :: i
        write (unit, "(I5,5X,'Segment')") segment
        do i = 1, count
            write (unit, "('Parameter: ',I5,5X,' Instance: ',I3,'  Value: ',F20.4)") &
                (i + 1)/2, 2 - mod(i, 2), values(i)
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
